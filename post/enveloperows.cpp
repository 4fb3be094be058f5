// SPDX-License-Identifier: GPL-3.0-or-later
// Items of a result file with the bounds of their values.
#include "post/enveloperows.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "post/components.h"
#include "post/exactstress.h"
#include "post/memberfile.h"
#include "post/plotunits.h"
#include "post/source.h"
#include "post/stressfile.h"

namespace {
struct envelopefile {
    const char* extension;
    resultkinds kind;
};
}  // namespace

static const envelopefile files[] = {{".rvp", resultkinds::displacements},
                                     {".EIG", resultkinds::modes},
                                     {".KRT", resultkinds::forces},
                                     {".NSL", resultkinds::stresses},
                                     {".MEM", resultkinds::members}};

// What of a plate's corner is told; of forces and moments all.
static const int platecomponents[] = {1,        2,      4,       toldcomponents, miseslargest,
                                      forcex,   forcey, forcexy, momentx,        momenty,
                                      momentxy, shearx, sheary};

// --- sums ---------------------------------------------------------------------------------------

std::vector<weighedcases> weighedset() {
    std::vector<weighedcases> set;
    for (const int c : envelopeset()) set.push_back({c, factorsof(c)});
    return set;
}

std::vector<weighedcases> weighedsource() {
    if (isenvelope()) return weighedset();
    return {{std::max(curlcomb, 1), shownfactors()}};
}

weighedcases modeonshow() {
    weighedcases w{curlcomb, std::vector<float>(std::size_t(std::max(curlcomb, 1)), 0)};
    w.factors.back() = 1;
    return w;
}

// --- rows ---------------------------------------------------------------------------------------

void enveloperows::addquantity(const char* name, const char* unit) {
    names.emplace_back(name);
    unitnames.emplace_back(unit);
    headed.push_back(what == envelopeof::modes ? name : ::headed(name, unit));
    factors.push_back(shownfactor(unit));
}

enveloperows::enveloperows(envelopeof of, std::vector<weighedcases> sumsof)
    : what(of),
      rows(modelname + files[int(of)].extension, files[int(of)].kind),
      over(std::move(sumsof)) {
    static const char* const ofnodes[] = {"FX", "FY", "FZ", "MX", "MY", "MZ"};
    rows.begin();
    if (what == envelopeof::plates) {
        for (const int component : platecomponents)
            addquantity(stresscomponents[component - 1].label, componentformula(component));
    } else if (what == envelopeof::members) {
        for (const quantityrow& row : quantityrows) addquantity(row.label, row.unit);
    } else {
        const bool areforces = what == envelopeof::forces;
        freedoms = freedomsof(rows.anadof());
        if (!areforces) addquantity(directions[0].label, "L");
        for (const int f : freedoms)
            addquantity(areforces ? ofnodes[f] : directions[f + 1].label,
                        areforces ? (f < 3 ? "F" : "F L") : (f < 3 ? "L" : "degrees"));
    }
    more = nextrow();
}

bool enveloperows::nextrow() {
    return rows.next(ahead);
}

// One row of all cases under a sum, into sums.
void enveloperows::sum(const blocks& row, const weighedcases& w) {
    sums.assign(row[0].values.size(), 0);
    for (std::size_t l = 0; l < row.size() && l < w.factors.size(); ++l) {
        if (row[l].values.size() != sums.size())
            throw runtimeerror{errtype, "the load cases differ in places; analyse again"};
        if (const double f = w.factors[l]; f != 0)
            for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += f * row[l].values[i];
    }
}

void enveloperows::takenode(enveloped& out) {
    const bool areforces = what == envelopeof::forces;
    for (const weighedcases& w : over) {
        sum(held[0], w);
        std::vector<governed>& to = out.places[0];
        std::size_t at = areforces ? 0 : 1;
        double square = 0;
        for (std::size_t i = 0; i < freedoms.size(); ++i, ++at) {
            const bool turns = freedoms[i] >= 3;
            if (!turns) square += sums[i] * sums[i];
            include(to[at], turns && !areforces ? sums[i] * 180 / pi : sums[i], w.number);
        }
        if (!areforces) include(to[0], std::sqrt(square), w.number);
    }
}

void enveloperows::takeplate(enveloped& out) {
    const std::size_t corners = out.places.size(), placewords = 3;
    for (const weighedcases& w : over) {
        float record[stresscorners][stressvalues] = {};
        for (std::size_t c = 0; c < corners; ++c) {
            sum(held[c], w);
            for (std::size_t k = 1; k < stressvalues; ++k)
                record[c][k] = float(sums[placewords + k - 1]);
        }
        for (std::size_t c = 0; c < corners; ++c)
            for (std::size_t q = 0; q < std::size(platecomponents); ++q)
                include(out.places[c][q],
                        factors[q] * recordvalue(platecomponents[q], out.item, int(c) + 1, record),
                        w.number);
    }
}

void enveloperows::takemember(enveloped& out) {
    const std::size_t each = memberquantities + 1;  // the place and its values
    for (const weighedcases& w : over) {
        sum(held[0], w);
        for (std::size_t i = 0; i < out.places.size(); ++i)
            for (std::size_t q = 0; q < memberquantities; ++q)
                include(out.places[i][q], sums[i * each + q + 1], w.number);
    }
}

bool enveloperows::next(enveloped& out) {
    if (!more) return false;
    out.item = ahead[0].item;
    std::size_t count = 0;
    do {
        if (count == held.size()) held.emplace_back();
        held[count++].swap(ahead);
        more = nextrow();
    } while (what == envelopeof::plates && more && ahead[0].item == out.item &&
             count < stresscorners);
    if (what == envelopeof::members) count = held[0][0].values.size() / (memberquantities + 1);
    out.places.assign(count, std::vector<governed>(names.size()));
    switch (what) {
        case envelopeof::plates:
            takeplate(out);
            break;
        case envelopeof::members:
            takemember(out);
            break;
        default:
            takenode(out);
    }
    return true;
}

// --- extremes -----------------------------------------------------------------------------------

const envelopeplace& envelopebounds::bysize() const {
    return std::fabs(low.value) > std::fabs(high.value) ? low : high;
}

void includeitem(std::vector<envelopebounds>& bounds, const enveloped& of) {
    for (std::size_t p = 0; p < of.places.size(); ++p) {
        bounds.resize(std::max(bounds.size(), of.places[p].size()));
        for (std::size_t q = 0; q < of.places[p].size(); ++q) {
            const governed& g = of.places[p][q];
            if (g.highof == 0) continue;
            envelopebounds& b = bounds[q];
            const int place = int(p) + 1;
            if (b.high.item == 0 || g.high > b.high.value)
                b.high = {of.item, place, g.highof, g.high};
            if (b.low.item == 0 || g.low < b.low.value) b.low = {of.item, place, g.lowof, g.low};
        }
    }
}
