// SPDX-License-Identifier: GPL-3.0-or-later
// The table of sums.
#include "post/balance.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"

double casebalance::rest() const {
    double most = 0, force = 0;
    for (const int half : {0, 3}) {
        double size = force * lever, left = 0;
        for (int k = half; k < half + 3; ++k) {
            const std::size_t i = std::size_t(k);
            size = std::max({size, std::fabs(applied[i]), std::fabs(reactions[i])});
            left = std::max(left, std::fabs(difference[i]));
        }
        if (left > 0) most = std::max(most, size > 0 ? left / size : 1);
        force = size;
    }
    return most;
}

bool casebalance::isbalanced() const {
    return rest() <= restlimit && residual <= restlimit;
}

// --- the file -----------------------------------------------------------------------------------

static sums readsums(textin& in) {
    sums six;
    for (double& value : six) value = in.number();
    return six;
}

// One row; the word has been read.
static void readrow(textin& in, const std::string& word, casebalance& c) {
    if (word == "load") {
        std::string kind = in.quoted();
        c.loads.emplace_back(std::move(kind), readsums(in));
    } else if (word == "applied") {
        c.applied = readsums(in);
    } else if (word == "reactions") {
        c.reactions = readsums(in);
    } else if (word == "difference") {
        c.difference = readsums(in);
    } else if (word == "residual") {
        c.residual = in.number();
    } else if (word == "translation") {
        c.translation = in.number();
        c.translationnode = in.count();
    } else if (word == "rotation") {
        c.rotation = in.number();
        c.rotationnode = in.count();
    } else if (word == "held") {
        c.held = in.number();
    } else if (word == "warnings") {
        in.count();
    } else if (word == "warning") {
        c.warnings.push_back(in.quoted());
    } else {
        in.fail(errtype, "a row of the sums was expected, found \"" + word + "\"");
    }
}

static void readcases(textin& in, balance& b) {
    for (const char* const kind : {"static", "modes"}) {
        if (in.quoted() != kind) in.fail(errtype, "the file begins with no sums");
        in.text();  // checksum
        in.count();
    }
    while (!in.atend()) {
        const std::string word = in.quoted();
        if (word == "mode") return;  // those of modes stand last
        if (word == "case") {
            casebalance c;
            c.lc = in.count();
            c.name = in.quoted();
            b.cases.push_back(std::move(c));
            continue;
        }
        if (b.cases.empty()) return;  // warnings of a run of modes
        readrow(in, word, b.cases.back());
    }
}

balance readbalance() {
    balance b;
    guarded(
        [&] {
            textin in(findnocase(modelname + ".sum"));
            readcases(in, b);
        },
        [&](const runtimeerror& e) {
            b.cases.clear();
            b.fault = e.number == errfilenotfound ? "There are no results of an analysis" : e.what;
        });
    double lever = 0;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) lever = std::max(lever, std::fabs(double(nodes(0, n, k))));
    for (casebalance& c : b.cases) c.lever = lever;
    if (b.cases.empty() && b.fault.empty()) b.fault = "There are no results of a static analysis";
    return b;
}

// --- the page -----------------------------------------------------------------------------------

static balancerow sumrow(const std::string& label, const sums& six) {
    double size = 0;
    for (const double v : six) size = std::max(size, std::fabs(v));
    balancerow row{{label}};
    for (const double v : six) row.cells.push_back(plainnumber(v, size));
    return row;
}

static balancerow differencerow(const casebalance& c) {
    balancerow row{{"Difference"}};
    for (const double v : c.difference) row.cells.push_back(shorttext(v));
    row.red = c.rest() > restlimit;
    return row;
}

std::vector<balancerow> balancepage(const balance& b) {
    std::vector<balancerow> page;
    for (const casebalance& c : b.cases) {
        balancerow head{{"Load case " + numbertext(c.lc) + ": " + shownname(c.name)}, true};
        head.red = !c.isbalanced();
        for (const char* const name : {"FX", "FY", "FZ"}) head.cells.push_back(headed(name, "F"));
        for (const char* const name : {"MX", "MY", "MZ"}) head.cells.push_back(headed(name, "F.L"));
        page.push_back(head);
        for (const auto& [kind, six] : c.loads) page.push_back(sumrow("Loads, " + kind, six));
        page.push_back(sumrow("All loads", c.applied));
        page.push_back(sumrow("Reactions", c.reactions));
        page.push_back(differencerow(c));
        page.push_back(
            {{"Residual of the equations", shorttext(c.residual)}, false, c.residual > restlimit});
        page.push_back({{headed("Largest translation", "L"), shorttext(c.translation), "at node",
                         numbertext(c.translationnode)}});
        if (c.rotationnode > 0)
            page.push_back({{"Largest rotation, degrees", shorttext(todegrees(c.rotation)),
                             "at node", numbertext(c.rotationnode)}});
        if (c.held > 0)
            page.push_back({{"Directions held, without stiffness", numbertext(c.held)}});
        for (const std::string& text : c.warnings)
            page.push_back({{"Warning: " + text}, false, true});
    }
    return page;
}
