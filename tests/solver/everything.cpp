// SPDX-License-Identifier: GPL-3.0-or-later
// A random model of every family.
#include "tests/solver/everything.h"

#include <cstdlib>

using grid = build::grid;

double between(generator& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

vec3 nudge(generator& random, double size) {
    return {between(random, -size, size), between(random, -size, size),
            between(random, -size, size)};
}

// A patch of a plate kind whose first edge is held, 20 wide and from z -9 to 9. What carries
// nothing in its plane lies flat and shares its nodes with a membrane.
static grid addsheet(build& b, generator& random, int type, int g, const vec3& origin, int n) {
    const bool flat = type == typeplate3 || type == typeplate4;
    const grid at = b.mesh(type, g, n, n, [&](double r, double s) {
        const vec3 upright(6 * r, 19 * r - 3 * s, 18 * s - 9), lying(20 * r, 18 * s, 0);
        vec3 x = origin + (flat ? lying : upright) + nudge(random, 0.5);
        if (flat) x.z() = origin.z();
        return x;
    });
    b.fix(at.bottom(), clamped);
    const auto dress = [&](int e, int first, int last) {
        b.m.elements[std::size_t(e)].turn = between(random, -1, 1);
        for (int direction = first; direction <= last; ++direction)
            b.press(1, e, direction, between(random, -1, 1));
    };
    for (int e = at.firstelement; e < at.firstelement + at.elements; ++e) {
        dress(e, flat ? 3 : 1, 3);
        if (!flat) continue;
        elementdef twin = b.m.elements[std::size_t(e)];
        twin.type = type == typeplate3 ? typememb3 : typememb4;
        b.m.elements.push_back(twin);
        dress(b.m.nelems(), 1, 2);
    }
    if (type == typeplate4)
        b.element(
            typeshear4, g,
            {at.number(n - 1, n - 1), at.number(n, n - 1), at.number(n, n), at.number(n - 1, n)});
    return at;
}

// Beams and tubes, bars, springs, a mass and an arm, tied to a node. Their sections have a
// direction, or are good for any.
static void addframe(build& b, generator& random, const vec3& origin, int tie, bool directed) {
    const int g = b.bar(2e5, 1.5, {2, directed ? 0.7 : 2, 1.1}, 8e-3);
    b.field(g, fieldrotation) = between(random, -80, 80);
    b.field(g, fieldwxx) = 1.5, b.field(g, fieldwyy) = directed ? 0.9 : 1.5;
    b.field(g, fieldwzz) = 1.2;
    const mat6 half = mat6::Random();
    const int point = b.spring(half * half.transpose() + mat6::Identity());
    b.field(point, fielddensity) = 3;
    b.field(point, fieldixx) = b.field(point, fieldiyy) = b.field(point, fieldizz) = 5;
    int n[8];
    for (int i = 0; i < 8; ++i)
        n[i] = b.node(origin + vec3((i & 1) * 9, (i >> 1 & 1) * 8, (i >> 2) * 16 - 8) +
                      nudge(random, 0.4));
    const int pairs[][2] = {{0, 4}, {1, 5}, {2, 6}, {3, 7}, {4, 5}, {5, 7}, {7, 6}, {6, 4}};
    for (const auto& p : pairs) {
        const int e = b.element(p[0] % 2 ? typepipe : typebeam, g, {n[p[0]], n[p[1]]});
        for (int direction = 1; direction <= (directed ? 3 : 1); ++direction)
            b.press(1, e, direction, between(random, -1, 1));
    }
    b.element(typebeam, g, {tie, n[3]}), b.element(typetruss, g, {n[0], n[7]});
    b.element(typespringt, point, {n[6]}), b.element(typespringr, point, {n[4]});
    b.element(typespring, point, {n[5]}), b.element(typemass, point, {n[7]});
    const vec3 corner = b.m.nodes[std::size_t(n[6])];
    const int twin = b.node(corner), arm = b.node(corner + vec3(3, -2, 4));
    b.element(typespring2, point, {n[6], twin});
    b.element(typerigid, point, {twin, arm});
    b.fix({n[0], n[1], n[2]}, clamped);
    vec6 f;
    f << nudge(random, 9), nudge(random, 9);
    b.load(1, arm, f);
}

build everything(unsigned seed, int fineness, bool directed) {
    generator random(seed);
    std::srand(seed);
    build b;
    b.inmetres();
    double along = 0;
    grid at;
    for (const int type : {typeplate3, typeplate4, typeshell3, typeshell4}) {
        const int g = b.plate(2e5, 0.3, 0.3, 8e-3);
        b.field(g, fieldplane) = type == typeplate3;
        at = addsheet(b, random, type, g, {along += 30, 5, 2}, fineness);
    }
    addframe(b, random, {along + 40, 0, 0}, at.number(fineness, fineness), directed);
    return b;
}
