// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of the log.
#include "solver/results/logtexts.h"

#include <algorithm>
#include <cmath>

#include "core/largest.h"

static const int column = 14;  // characters

// A number of a table in which the largest has this size: what is only its rounding shows as 0.
static std::string cleaned(double value, double largest) {
    const double rounding = 1e-11;
    return rightaligned(shortnumber(std::fabs(value) <= rounding * largest ? 0 : value), column);
}

static std::string headings(const char* first, std::initializer_list<const char*> names) {
    std::string text = padded(first, 2 * column);
    for (const char* name : names) text += rightaligned(name, column);
    return text;
}

static std::string triple(const vec3& v) {
    return shortnumber(v[0]) + ", " + shortnumber(v[1]) + ", " + shortnumber(v[2]);
}

void tellunits(const settings& s, runlog& log) {
    log.line("Units: a length is " + shortnumber(s.length) + " m, a force " + shortnumber(s.force) +
             " N, a mass " + shortnumber(s.mass) + " kg");
}

static double countedrows(const model& m, const std::vector<nodalrow>& rows) {
    return double(
        std::ranges::count_if(rows, [&](const nodalrow& r) { return iscounted(m, r.node); }));
}

void tellmodel(const model& m, runlog& log) {
    double counts[lasttype + 1] = {};  // by type, and of constraints
    double& constraints = counts[0];
    for (int e = 1; e <= m.nelems(); ++e) counts[m.elements[std::size_t(e)].type] += isown(m, e);
    constraints = countedrows(m, m.constraints);
    allranks().sum(counts, lasttype + 1);
    log.line("Nodes " + std::to_string(m.allnodes()) + ", elements " +
             std::to_string(m.allelements()) + ", groups " + std::to_string(m.ngroups()) +
             ", load cases " + std::to_string(m.ncases()) + ", constraints " +
             std::to_string(long(constraints)));
    for (int type = 1; type <= lasttype; ++type)
        if (counts[type] > 0)
            log.line("  " + padded(kindof(type).name, 10) + std::to_string(long(counts[type])));
}

void tellcases(const model& m, runlog& log) {
    static const char* const types[] = {"applied loads",
                                        "acceleration along x",
                                        "acceleration along y",
                                        "acceleration along z",
                                        "acceleration about x",
                                        "acceleration about y",
                                        "acceleration about z",
                                        "waves",
                                        "wind",
                                        "buoyancy"};
    for (int lc = 1; lc <= m.ncases(); ++lc) {
        const loadcase& c = m.cases[std::size_t(lc)];
        const auto ownrow = [&](const elementrow& r) { return isown(m, r.element); };
        double rows[] = {countedrows(m, c.nodal), double(std::ranges::count_if(c.element, ownrow))};
        allranks().sum(rows, 2);
        log.line("Case " + std::to_string(lc) + " \"" + c.name + "\": " + types[c.type] + ", " +
                 std::to_string(long(rows[0])) +
                 (c.type == caseapplied ? " nodal load(s), " : " nodal mass(es), ") +
                 std::to_string(long(rows[1])) + " element load(s)");
    }
}

void tellmass(const massproperties& p, const settings& s, runlog& log) {
    log.line("Mass of the elements " + shortnumber(p.mass) + " (" + shortnumber(p.mass * s.mass) +
             " kg)");
    if (p.mass > 0)
        log.line("  centre " + triple(p.centre) + ", radii of gyration about it " +
                 triple(p.radius));
}

void telllargest(const model& m, const dofmap& d, const displacements& u, runlog& log) {
    log.line();
    log.line("Largest translation");
    const double size = modelsize(m);
    for (int lc = 1; lc <= u.cases; ++lc) {
        const auto sizeat = [&](std::size_t i) {
            double square = 0;
            for (int k = 0; k < d.pernode; ++k)
                if (d.code[k] <= 3) square += std::pow(u.of(d, lc)[d.index(int(i) + 1, k)], 2);
            return std::sqrt(square);
        };
        const largestof largest = findlargest(*d.nodes, std::size_t(m.nnodes()), sizeat);
        std::string text = padded("  case " + std::to_string(lc), column);
        text += rightaligned(shortnumber(largest.size), column);
        if (largest.item > 0) text += "  at node " + std::to_string(largest.item);
        const double absurd = 10;  // small displacements are assumed throughout
        if (size > 0 && largest.size > absurd * size)
            text += ", " + shortnumber(std::round(largest.size / size)) +
                    " times the size of the model: next to nothing holds it, or units do not fit";
        log.line(text);
    }
}

void tellbalance(const model& m, const reactionset& r, runlog& log) {
    log.line();
    log.line(headings("Balance, moments about 0,0,0", {"X", "Y", "Z", "RX", "RY", "RZ"}));
    for (int lc = 1; lc <= m.ncases(); ++lc) {
        const vec6 &load = r.load[std::size_t(lc)], &reaction = r.reaction[std::size_t(lc)];
        const auto sizeof2 = [&](int first) {
            return std::max(load.segment<3>(first).norm(), reaction.segment<3>(first).norm());
        };
        const double force = sizeof2(0), moment = sizeof2(3);
        const auto row = [&](const char* name, const vec6& v, bool clean) {
            std::string text = padded(name, 2 * column);
            for (int k = 0; k < 6; ++k) text += cleaned(v[k], clean ? (k < 3 ? force : moment) : 0);
            log.line(text);
        };
        log.line("Case " + std::to_string(lc) + " \"" + m.cases[std::size_t(lc)].name + "\"");
        row("  load", load, true);
        row("  reaction", reaction, true);
        row("  difference", load + reaction, false);
    }
}

void tellmodes(const modeset& r, runlog& log) {
    log.line();
    log.line("  Mode omega^2, 1/s^2 frequency, Hz     period, s  effective mass, % of X Y Z");
    for (int i = 0; i < r.count(); ++i) {
        const double square = r.value[std::size_t(i)];
        const double hertz = square > 0 ? std::sqrt(square) / (2 * M_PI) : 0;
        std::string text = rightaligned(std::to_string(i + 1), 6);
        for (const double v : {square, hertz, hertz > 0 ? 1 / hertz : 0})
            text += rightaligned(shortnumber(v), column);
        text += "  ";
        for (int k = 0; k < 3; ++k) {
            const double share = 100 * r.effectivemass[std::size_t(i)][k] / r.totalmass[k];
            char percent[20];
            std::snprintf(percent, sizeof percent, "%9.3f", r.totalmass[k] > 0 ? share : 0);
            text += percent;
        }
        log.line(text);
    }
}
