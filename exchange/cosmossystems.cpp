// SPDX-License-Identifier: GPL-3.0-or-later
// Coordinate systems of Cosmos texts.
#include "exchange/cosmossystems.h"

#include <cmath>

#include "core/session.h"

static const double degree = pi / 180;

static triple minus(const triple& a, const triple& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

static triple cross(const triple& a, const triple& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// To length 1; false for what has none.
static bool makeunit(triple& v) {
    const double length = std::hypot(v[0], v[1], v[2]);
    if (!(length > 0) || !std::isfinite(length)) return false;
    for (double& c : v) c /= length;
    return true;
}

cosmossystems::cosmossystems() {
    for (long type = 0; type <= 2; ++type) systems[type].type = type;
}

static bool istype(long type) {
    return type >= 0 && type <= 2;
}

bool cosmossystems::add(long number, long type, const triple& origin, const triple& onx,
                        const triple& inplane) {
    triple x = minus(onx, origin), side = minus(inplane, origin);
    if (!istype(type) || !makeunit(x) || !makeunit(side)) return false;
    triple z = cross(x, side);
    const double least = 1e-9;  // sine of the angle between the two
    if (std::hypot(z[0], z[1], z[2]) < least || !makeunit(z)) return false;
    systems[number] = {type, {{x, cross(z, x), z}, origin}};
    return true;
}

// Two axes turned about the third.
static void turn(triple& a, triple& b, double angle) {
    const double c = std::cos(angle * degree), s = std::sin(angle * degree);
    for (std::size_t k = 0; k < 3; ++k) {
        const double before = a[k];
        a[k] = c * before + s * b[k];
        b[k] = c * b[k] - s * before;
    }
}

bool cosmossystems::addturned(long number, long type, const triple& origin, const triple& angles) {
    if (!istype(type)) return false;
    placement p = moved(origin);
    auto& [x, y, z] = p.axes;
    turn(x, y, angles[0]);
    turn(y, z, angles[1]);
    turn(z, x, angles[2]);
    systems[number] = {type, p};
    return true;
}

bool cosmossystems::toglobal(long number, const triple& local, triple& global) const {
    const auto at = systems.find(number);
    if (at == systems.end()) return false;
    const long type = at->second.type;
    if (number == 0) {
        global = local;
        return true;
    }
    triple p = local;
    if (type > 0) {
        const double level = type == 2 ? local[0] * std::cos(local[2] * degree) : local[0];
        p[0] = level * std::cos(local[1] * degree);
        p[1] = level * std::sin(local[1] * degree);
        if (type == 2) p[2] = local[0] * std::sin(local[2] * degree);
    }
    global = at->second.at(p);
    return true;
}
