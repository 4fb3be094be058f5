// SPDX-License-Identifier: GPL-3.0-or-later
// The few words on new results.
#include "post/outcome.h"

#include <array>
#include <cmath>
#include <vector>

#include "core/largest.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/legend.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/postproces.h"

// Of the combination in hand.
static std::string displacementtext() {
    textin in(findnocase(modelname + ".rvp"));
    const int anadof = readheader(in), count = nnodes();
    std::vector<std::array<double, 3>> sum(std::size_t(count) + 1);
    for (int l = 1; !in.atend(); ++l) {
        const double factor = factorofcase(in, l);
        for (int n = 1; n <= count; ++n) {
            const noderow row = readnoderow(in, anadof);
            auto& at = sum[std::size_t(n)];
            at = {at[0] + factor * row.x, at[1] + factor * row.y, at[2] + factor * row.z};
        }
        in.text();
    }
    largestof most;
    for (int n = 1; n <= count; ++n) {
        const auto& [x, y, z] = sum[std::size_t(n)];
        most.meet(n, std::hypot(x, y, z));
    }
    if (most.item == 0) return "all displacements are 0";
    return "largest displacement " + shorttext(most.size) + behind("L") + " at node " +
           numbertext(most.item) + ", load combination " + shownname(lcombname(curlcomb));
}

static std::string modestext() {
    textin in(findnocase(modelname + ".EIG"));
    in.number();
    const long count = in.whole();
    const double first = in.number();
    return numbertext(double(count)) + (count == 1 ? " mode, " : " modes, the lowest ") +
           frequencytext(first);
}

std::string outcometext() {
    std::string text;
    const auto unread = [](const runtimeerror&) {};
    if (doeigen == 1)
        guarded([&] { text = modestext(); }, unread);
    else if (dosolve == 1 && curlcomb >= 1 && curlcomb <= ncomb())
        guarded([&] { text = displacementtext(); }, unread);
    return text;
}
