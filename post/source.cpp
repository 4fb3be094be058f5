// SPDX-License-Identifier: GPL-3.0-or-later
// The source of the results on show. State: shownsource.
#include "post/source.h"

#include <algorithm>

#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "files/kalfile.h"

resultsource shownsource;

const char* const envelopesection = "envelope";
static const char* const kindnames[] = {"largest by size", "largest", "smallest"};

bool isenvelope() {
    return shownsource.of == sources::envelope;
}

std::vector<int> envelopeset() {
    std::vector<int> set;
    for (int c = 1; c <= ncomb(); ++c)
        if (shownsource.set.empty() ||
            std::ranges::find(shownsource.set, c) != shownsource.set.end())
            set.push_back(c);
    return set;
}

std::string combinationname() {
    return curlcomb >= 1 && curlcomb <= ncomb() ? shownname(lcombname(curlcomb)) : "Load Case 1";
}

std::string sourcename() {
    if (shownsource.of == sources::loadcase)
        return "Load case " + shownname(lcname(std::clamp(shownsource.lc, 1, nlc())));
    if (!isenvelope()) return combinationname();
    return "Envelope of " + numbertext(int(envelopeset().size())) + " combinations, " +
           kindnames[int(shownsource.kind)];
}

float shownfactor(int l) {
    if (shownsource.of == sources::loadcase) return l == shownsource.lc ? 1 : 0;
    return curlcomb >= 1 && curlcomb <= ncomb() ? lcomb(curlcomb, l) : 0;
}

std::vector<float> factorsof(int c) {
    std::vector<float> factors;
    for (int l = 1; l <= nlc(); ++l) factors.push_back(lcomb(c, l));
    return factors;
}

std::vector<float> shownfactors() {
    std::vector<float> factors;
    for (int l = 1; l <= nlc(); ++l) factors.push_back(shownfactor(l));
    return factors;
}

// Combinations by their names: their numbers change when one is deleted.
void keepsource() {
    std::string rows;
    if (!shownsource.set.empty() || shownsource.kind != envelopekinds::bysize)
        rows = "\"kind\"," + numbertext(int(shownsource.kind)) + "\n";
    for (const int c : shownsource.set) {
        std::string name;
        for (const char letter : lcombname(c))
            name += letter == '"' ? "\"\"" : std::string(1, letter);
        rows += "\"combination\",\"" + name + "\"\n";
    }
    putkalsection(envelopesection, rows);
}

static resultsource readsource(textin& in) {
    resultsource read;
    while (!in.atend()) {
        const std::string word = in.quoted();
        if (word == "kind") {
            read.kind = envelopekinds(in.wholewithin(0, 2, "a kind of envelope"));
        } else if (word == "combination") {
            const std::string name = in.quoted();
            for (int c = 1; c <= ncomb(); ++c)
                if (lcombname(c) == name) read.set.push_back(c);
        } else {
            in.fail(errtype, "kind or combination was expected, found \"" + word + "\"");
        }
    }
    return read;
}

void restoresource() {
    textin in = kalreader(envelopesection);
    shownsource = {};
    guarded([&] { shownsource = readsource(in); }, [](const runtimeerror&) {});
}

void checksource(textin& in) {
    readsource(in);
}
