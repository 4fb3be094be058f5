// SPDX-License-Identifier: GPL-3.0-or-later
// BASE.kal, the model's further file: what has no place in the other eleven, in sections by
// keyword.
//
//     "section","legend"        any keyword; then rows as in the other files, which the owner of
//     "SX",-100,250.5           the section writes and reads
//     "end"
//
// A missing file means no sections. Sections that nobody here knows are kept word for word. The
// text belongs to the model: it goes with saves, copies, recovery and steps back, and a change of
// it makes the model unsaved, but no results stale.
#pragma once

#include <functional>
#include <string>

#include "core/textfile.h"

// The rows of a section, lines ending with LF; "" where the model has none.
std::string kalsection(const std::string& keyword);
// In place of the section, or behind the last; "" takes it out. Throws errtype for rows that would
// end the section.
void putkalsection(const std::string& keyword, const std::string& rows);
// The same rows for a reader: faults name the file and its line.
textin kalreader(const std::string& keyword);

// The owner's reader of a section, run when a model is opened: it throws runtimeerror for rows that
// it can not take, and stores nothing.
void checkkalsection(const std::string& keyword, std::function<void(textin&)> check);

bool haskal();
void writekal(textout& out);
void readkal(const std::string& base);
void dropkal();
