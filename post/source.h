// SPDX-License-Identifier: GPL-3.0-or-later
// What the results on show are of: the load combination in the main window's list, one load case,
// or an envelope over several combinations.
#pragma once

#include <string>
#include <vector>

enum class sources { combination, loadcase, envelope };
enum class envelopekinds { bysize, largest, smallest };

struct resultsource {
    sources of = sources::combination;
    int lc = 1;
    envelopekinds kind = envelopekinds::bysize;
    std::vector<int> set;  // combinations of the envelope; none: all that there are
};
extern resultsource shownsource;

bool isenvelope();
// The combinations of the envelope that exist.
std::vector<int> envelopeset();
// "Wind", "Load case LC 1", "Envelope of 3 combinations, largest".
std::string sourcename();
std::string combinationname();  // of the one in the list
// Multiplier of load case l in what is read now: of the case or of the current combination. An
// envelope reads the current one where it has no values of its own.
float shownfactor(int l);
// The multipliers of a combination, and those of what is read now: of load cases 1, 2, ...
std::vector<float> factorsof(int c);
std::vector<float> shownfactors();

// The envelope's set and kind go with the model.
void keepsource();
// What the model tells; "combination" is on show then.
void restoresource();
extern const char* const envelopesection;
class textin;
void checksource(textin& in);  // throws for what it can not take
