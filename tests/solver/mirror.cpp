// SPDX-License-Identifier: GPL-3.0-or-later
// A model of every family under every kind of load, turned about the vertical axis or mirrored at a
// vertical plane: displacements, reactions and each single stress go along.
#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>
#include <random>

#include "tests/solver/build.h"

namespace {
using generator = std::mt19937;

// Turns by an angle about the vertical; mirrored: x becomes -x beforehand.
struct change {
    mat3 q;
    double angle;
    bool mirrored;
    double side() const { return mirrored ? -1 : 1; }
    // Heading of a sea or a wind, degrees from x to y.
    double heading(double degrees) const {
        return (mirrored ? 180 - degrees : degrees) + angle * 180 / M_PI;
    }
};

change makechange(double angle, bool mirrored) {
    change c{Eigen::AngleAxisd(angle, vec3::UnitZ()).toRotationMatrix(), angle, mirrored};
    if (mirrored) c.q.col(0) *= -1;
    return c;
}
}  // namespace

static double between(generator& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

static vec3 nudge(generator& random, double size) {
    return {between(random, -size, size), between(random, -size, size),
            between(random, -size, size)};
}

// A patch of each plate and membrane kind whose first edge is held, 20 wide and from z -9 to 9.
static void addsheet(build& b, generator& random, int type, int g, const vec3& origin) {
    const bool flat = type == typeplate3 || type == typeplate4;
    const auto at = b.mesh(type, g, 3, 3, [&](double r, double s) {
        const vec3 upright(6 * r, 19 * r - 3 * s, 18 * s - 9), lying(20 * r, 18 * s, 0);
        vec3 x = origin + (flat ? lying : upright) + nudge(random, 0.5);
        if (flat) x.z() = origin.z();
        return x;
    });
    for (int i = 0; i <= 3; ++i) b.fix(at.number(i, 0), {1, 2, 3, 4, 5, 6});
    for (int e = at.firstelement; e < at.firstelement + at.elements; ++e) {
        b.m.elements[std::size_t(e)].turn = between(random, -1, 1);
        for (int direction = 1; direction <= 3; ++direction)
            if (!flat || direction == 3) b.press(1, e, direction, between(random, -1, 1));
    }
    for (int e = at.firstelement; flat && e < at.firstelement + at.elements; ++e) {
        // a plate carries nothing in its plane; a membrane on the same nodes does
        elementdef twin = b.m.elements[std::size_t(e)];
        twin.type = type == typeplate3 ? typememb3 : typememb4;
        b.m.elements.push_back(twin);
    }
}

// Beams with a directed, turned section, tubes, bars, springs, a mass and an arm.
static void addframe(build& b, generator& random, const vec3& origin) {
    const int g = b.group({{fieldmodulus, 2e5},
                           {fieldpoisson, 0.3},
                           {fielddensity, 8e-3},
                           {fieldthickness, 1.5},
                           {fieldrotation, between(random, -80, 80)},
                           {fieldixx, 2},
                           {fieldwxx, 1.5},
                           {fieldiyy, 0.7},
                           {fieldwyy, 0.9},
                           {fieldizz, 1.1},
                           {fieldwzz, 1.2}});
    const int point = b.group({{fielddensity, 3}, {fieldixx, 5}, {fieldiyy, 5}, {fieldizz, 9}});
    const mat6 half = mat6::Random();
    b.m.groups[std::size_t(point)].spring = half * half.transpose() + mat6::Identity();
    int n[8];
    for (int i = 0; i < 8; ++i)
        n[i] = b.node(origin.x() + (i & 1) * 9, origin.y() + (i >> 1 & 1) * 8,
                      origin.z() + (i >> 2) * 16 - 8);
    for (const int one : n) b.m.nodes[std::size_t(one)] += nudge(random, 0.4);
    const int pairs[][2] = {{0, 4}, {1, 5}, {2, 6}, {3, 7}, {4, 5}, {5, 7}, {7, 6}, {6, 4}};
    for (const auto& p : pairs) {
        const int type = p[0] % 2 ? typepipe : typebeam;
        const int e = b.element(type, g, {n[p[0]], n[p[1]]});
        for (int direction = 1; direction <= 3; ++direction)
            b.press(1, e, direction, between(random, -1, 1));
    }
    b.element(typetruss, g, {n[0], n[7]});
    b.element(typespringt, point, {n[6]}), b.element(typespringr, point, {n[4]});
    b.element(typespring, point, {n[5]}), b.element(typemass, point, {n[7]});
    const vec3 corner = b.m.nodes[std::size_t(n[6])];
    const int twin = b.node(corner.x(), corner.y(), corner.z());
    b.element(typespring2, point, {n[6], twin});
    const int arm = b.node(corner.x() + 3, corner.y() - 2, corner.z() + 4);
    b.element(typerigid, point, {twin, arm});
    b.fix(n[0], {1, 2, 3, 4, 5, 6}), b.fix(n[1], {1, 2, 3, 4, 5, 6});
    b.fix(n[2], {1, 2, 3, 4, 5, 6});
    for (int dof = 1; dof <= 6; ++dof) b.load(1, arm, dof, between(random, -9, 9));
}

static build everything(generator& random) {
    build b;
    b.s.length = b.s.force = b.s.mass = 1;
    const int plane = b.plate(2e5, 0.3, 0.3, 8e-3);
    const int strain = b.plate(2e5, 0.3, 0.3, 8e-3);
    b.m.groups[std::size_t(strain)].field[fieldplane] = 1;
    double along = 0;
    for (const int type : {typeshell3, typeshell4, typeplate3, typeplate4})
        addsheet(b, random, type, plane, {along += 30, 5, 2});
    addframe(b, random, {along + 40, 0, 0});
    // Membranes carry what lies in their plane: flat ones, held across it.
    for (const int type : {typememb3, typememb4}) {
        const int first = b.m.nnodes() + 1;
        const double y = along -= 25;
        const auto at =
            b.mesh(type, type == typememb3 ? strain : plane, 2, 2, [&](double r, double s) {
                return vec3(9 * r + s + between(random, -0.3, 0.3),
                            y + 8 * s + between(random, -0.3, 0.3), 40);
            });
        for (int n = first; n <= b.m.nnodes(); ++n) b.fix(n, {3});
        for (int i = 0; i <= 2; ++i) b.fix(at.number(i, 0), {1, 2}), b.fix(at.number(0, i), {1, 2});
        for (int direction = 1; direction <= 2; ++direction)
            b.press(1, at.firstelement, direction, between(random, -1, 1));
        if (type == typememb4)
            b.element(typeshear4, plane,
                      {at.number(1, 1), at.number(2, 1), at.number(2, 2), at.number(1, 2)});
    }
    return b;
}

static build changed(const build& b, const change& c) {
    build t = b;
    for (vec3& x : t.m.nodes) x = c.q * x;
    mat6 both = mat6::Zero();
    both.topLeftCorner<3, 3>() = c.q;
    both.bottomRightCorner<3, 3>() = c.side() * c.q;
    for (groupdata& g : t.m.groups) {
        g.spring = both * g.spring * both.transpose();
        g.field[fieldrotation] *= c.side();
    }
    for (elementdef& e : t.m.elements) e.turn *= c.side();  // about a normal that looks back
    std::vector<nodalrow>& rows = t.m.cases[1].nodal;
    for (std::size_t i = 0; i < rows.size(); i += 6) {
        vec6 f;
        for (int k = 0; k < 6; ++k) f[k] = rows[i + std::size_t(k)].value;
        f = both * f;
        for (int k = 0; k < 6; ++k) rows[i + std::size_t(k)].value = f[k];
    }
    // The normal of a plate and e2 of a line look the other way in a mirror.
    for (elementrow& row : t.m.cases[1].element) {
        const family fam = kindof(t.m.elements[std::size_t(row.element)].type).fam;
        if (row.direction == (fam == family::plate ? 3 : 2)) row.value *= c.side();
    }
    return t;
}

static void addcases(build& b, const change& c) {
    b.addcase(caseaccz, {-9.81, 0, 0, 0, 1});
    const vec3 centre = c.q * vec3(20, -30, 5);
    b.addcase(caseaccrz, {c.side() * 4, centre.x(), centre.y(), centre.z(), 1});
    b.addcase(casewave, {4, 7, c.heading(25), 0.2, 20});
    b.addcase(casewind, {30, c.heading(-40)});
    // Water presses against the normal, which looks the other way in a mirror.
    if (!c.mirrored) b.addcase(casebuoyancy, {3.3, 8, 1.1});
}

static mat3 tensorof(const double* s, const mat3& axes) {
    mat3 local = mat3::Zero();
    local.topLeftCorner<2, 2>() << s[0], s[2], s[2], s[1];
    return axes.transpose() * local * axes;
}

static void comparestresses(const build& b, const results& r, const build& t, const results& s,
                            const change& c, int lc) {
    double most = 0;
    for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
        const mat3 axes = stressaxes(elementat(b.m, b.s, r.plates.elements[i]));
        const mat3 turned = stressaxes(elementat(t.m, t.s, r.plates.elements[i]));
        for (int k = r.plates.first[i]; k < r.plates.first[i + 1]; ++k)
            for (int half = 0; half < 6; half += 3) {
                // bending is told at the face to which the normal looks
                const double sign = half == 3 ? c.side() : 1;
                const mat3 one = tensorof(r.plates.of(lc, k) + half, axes);
                const mat3 other = sign * tensorof(s.plates.of(lc, k) + half, turned);
                most = std::max(most, one.norm());
                EXPECT_LT((other - c.q * one * c.q.transpose()).norm(), 1e-7 * (most + 1e-3))
                    << b.m.elements[std::size_t(r.plates.elements[i])].type << " half " << half;
            }
    }
    for (std::size_t i = 0; i < r.lines.elements.size(); ++i) {
        // axial, moment about e2, about e3, torsion
        const double sign[linevalues] = {1, 1, c.side(), c.side()};
        const double *const one = r.lines.of(i, lc), *const other = s.lines.of(i, lc);
        for (int k = 0; k < 2 * linevalues; ++k) most = std::max(most, std::fabs(one[k]));
        for (int k = 0; k < 2 * linevalues; ++k)
            EXPECT_NEAR(sign[k % linevalues] * other[k], one[k], 1e-7 * most) << "line " << i;
    }
}

TEST(Invariance, EveryFamilyAndLoadGoesAlongInATurnAndInAMirror) {
    for (unsigned seed = 21; seed <= 26; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        generator random(seed);
        std::srand(seed);
        build b = everything(random);
        const change c = makechange(between(random, -3, 3), seed % 2 == 0);
        build t = changed(b, c);
        addcases(b, makechange(0, false)), addcases(t, c);
        b.m.cases.resize(t.m.cases.size());
        ASSERT_EQ(b.refusal(), "");
        const results r = b.solve(), s = t.solve();
        for (int lc = 1; lc <= r.u.cases; ++lc) {
            SCOPED_TRACE("case " + std::to_string(lc));
            double most[4] = {};
            const auto at = [](const results& one, double (*what)(const results&, int, int, int),
                               int which, int n, int first) {
                return vec3(what(one, which, n, first), what(one, which, n, first + 1),
                            what(one, which, n, first + 2));
            };
            for (int n = 1; n <= b.m.nnodes(); ++n)
                for (int k = 0; k < 4; ++k)
                    most[k] = std::max(most[k],
                                       at(r, k < 2 ? moved : reacted, lc, n, k % 2 ? 4 : 1).norm());
            for (int n = 1; n <= b.m.nnodes(); ++n)
                for (int k = 0; k < 4; ++k) {
                    const auto what = k < 2 ? moved : reacted;
                    const double sign = k % 2 ? c.side() : 1;
                    const vec3 one = at(r, what, lc, n, k % 2 ? 4 : 1);
                    const vec3 other = at(s, what, lc, n, k % 2 ? 4 : 1);
                    EXPECT_LT((other - sign * c.q * one).norm(), 1e-7 * most[k] + 1e-300)
                        << "node " << n << " kind " << k;
                }
            comparestresses(b, r, t, s, c, lc);
        }
    }
}
