// SPDX-License-Identifier: GPL-3.0-or-later
// Turns of elements, and their distributed loads.
#include "tools/elementaxes.h"

#include <algorithm>
#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "view/localaxes.h"

elementaxes axesofelement(int e) {
    localaxes(e);
    const auto vector = [](const double* v) { return point3{v[0], v[1], v[2]}; };
    return {vector(localx), vector(localy), vector(localz)};
}

std::vector<elementloadrow> turnedload(const elementloadrow& row, const elementaxes& before,
                                       const elementaxes& now) {
    const double nothing = 1e-6;  // of the load: what Singles leave of a right angle
    const point3 load = row.value * before[std::size_t(row.direction) - 1];
    std::vector<elementloadrow> rows;
    for (int k = 1; k <= 3; ++k) {
        double part = dot(load, now[std::size_t(k) - 1]);
        if (std::fabs(part) <= nothing * std::fabs(row.value)) continue;
        const bool whole =
            std::fabs(std::fabs(part) - std::fabs(row.value)) <= nothing * std::fabs(row.value);
        if (whole) part = std::copysign(row.value, part);
        rows.push_back({row.element, k, part});
    }
    return rows.empty() ? std::vector{row} : rows;
}

// --- node order ---------------------------------------------------------------------------------

// The ends of a line have changed places: a release stays with its node.
static void swapends(int e) {
    if (nodesoftype(elems(e, 0)) != 2) return;
    std::ranges::swap_ranges(endrelease.row(e, 1), endrelease.row(e, 2));
}

void rotatenodes(int e) {
    const auto row = elems.row(e);
    const int count = nodesoftype(row[0]);
    if (count > 1) std::rotate(row.begin() + 1, row.begin() + 2, row.begin() + 1 + count);
    swapends(e);
}

void reversenodes(int e) {
    const auto row = elems.row(e);
    std::reverse(row.begin() + 1, row.begin() + 1 + nodesoftype(row[0]));
    swapends(e);
}

void mirrornodes(int e) {
    reversenodes(e);
    rotatenodes(e);
    rotatenodes(e);
    if (rotpo(e) != 0) rotpo(e) = -rotpo(e);
}

// --- loads that follow --------------------------------------------------------------------------

void turningelements::keep(int e) {
    if (place.empty()) place.assign(std::size_t(nelems()) + 1, -1);
    int& at = place[std::size_t(e)];
    if (at >= 0) return;
    at = int(before.size());
    turnedelement kept{e, axesofelement(e), {}, rotpo(e), {}};
    std::ranges::copy(elems.row(e), kept.row.begin());
    const auto rest = std::ranges::copy(endrelease.row(e, 1), kept.release.begin()).out;
    std::ranges::copy(endrelease.row(e, 2), rest);
    before.push_back(kept);
}

void turningelements::putback() const {
    for (const turnedelement& kept : before) {
        std::ranges::copy(kept.row, elems.row(kept.e).begin());
        rotpo(kept.e) = kept.rotation;
        const auto ends = kept.release.begin() + 7;
        std::copy(kept.release.begin(), ends, endrelease.row(kept.e, 1).begin());
        std::copy(ends, kept.release.end(), endrelease.row(kept.e, 2).begin());
    }
}

turningelements::turnedrows turningelements::turnedcase(int lc) const {
    turnedrows turned;
    for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
        const elementloadrow row = {int(elemload(lc, i, 0)), int(elemload(lc, i, 1)),
                                    double(elemload(lc, i, 2))};
        const bool known = row.element >= 1 && row.element < int(place.size());
        const int at = known ? place[std::size_t(row.element)] : -1;
        if (at < 0 || row.direction < 1 || row.direction > 3) {
            turned.rows.push_back(row);
            continue;
        }
        const auto parts =
            turnedload(row, before[std::size_t(at)].axes, axesofelement(row.element));
        turned.changed +=
            parts.size() != 1 || parts[0].direction != row.direction || parts[0].value != row.value;
        turned.rows.insert(turned.rows.end(), parts.begin(), parts.end());
    }
    return turned;
}

int turningelements::settle() {
    if (before.empty()) return 0;
    std::vector<turnedrows> cases;
    long rows = 0;
    int changed = 0;
    for (int lc = 1; lc <= nlc(); ++lc) {
        cases.push_back(turnedcase(lc));
        rows = std::max(rows, long(cases.back().rows.size()));
        changed += cases.back().changed;
    }
    if (!growfor({{sizeconditions, rows}})) {
        putback();
        return -1;
    }
    for (int lc = 1; lc <= nlc() && changed > 0; ++lc) {
        int i = 0;
        for (const elementloadrow& row : cases[std::size_t(lc) - 1].rows) {
            ++i;
            elemload(lc, i, 0) = float(row.element);
            elemload(lc, i, 1) = float(row.direction);
            elemload(lc, i, 2) = float(row.value);
        }
        elemload(lc, 0, 0) = float(i);
    }
    return changed;
}

int turnwithloads(const std::vector<int>& meant, const std::function<void(int)>& turn) {
    turningelements turning;
    for (const int e : meant) {
        turning.keep(e);
        turn(e);
    }
    return turning.settle();
}
