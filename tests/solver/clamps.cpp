// SPDX-License-Identifier: GPL-3.0-or-later
// Clamped edges of shells, where the material turns and the support does not.
#include <Eigen/Geometry>
#include <cmath>

#include "tests/solver/verify.h"

using grid = build::grid;

static const mat3 oblique = Eigen::AngleAxisd(1.1, vec3(1, -2, 3).normalized()).toRotationMatrix();

// n rings of 6 n elements from the clamped hub to the rim, in an oblique plane. A torque of 1 GNmm
// on the rim.
namespace {
struct disc {
    static constexpr double hub = 100, rim = 400, thickness = 10, torque = 1e9;
    build b;
    grid at;

    disc(int type, int n)
        : at(b.mesh(type, b.plate(210000, 0.3, thickness), n, 6 * n, [](double r, double s) {
              const double far = hub + (rim - hub) * r, turn = 2 * M_PI * s;
              return vec3(oblique * vec3(far * std::cos(turn), far * std::sin(turn), 0));
          })) {
        // the mesh is closed: what stands on its first line takes the place of the last
        const int last = at.number(0, at.ny);
        for (elementdef& e : b.m.elements)
            for (int& node : e.node)
                if (node >= last) node -= last - at.number(0, 0);
        for (int i = 0; i <= n; ++i) b.fix(last + i, {1, 2, 3, 4, 5, 6});
        b.addcase();
        for (int j = 0; j < at.ny; ++j) {
            b.fix(at.number(0, j), clamped);
            const vec3 force = torque / (at.ny * rim) * along(j);
            for (int k = 0; k < 3; ++k) b.load(1, at.number(n, j), k + 1, force[k]);
        }
    }
    // Unit vector along the rim at its j-th node.
    vec3 along(int j) const {
        const double turn = 2 * M_PI * j / at.ny;
        return oblique * vec3(-std::sin(turn), std::cos(turn), 0);
    }
};
}  // namespace

// The shear strain T / (2 pi r r t G) turns the rim.
TEST(Verification, DiscTurnedAtItsRim) {
    for (const auto& [type, n, tolerance] : {std::tuple(typeshell4, 4, 0.03),
                                             {typeshell4, 8, 0.01},
                                             {typeshell4, 16, 0.003},
                                             {typeshell3, 4, 0.16},
                                             {typeshell3, 8, 0.06},
                                             {typeshell3, 16, 0.02}}) {
        disc d(type, n);
        const results r = solvebalanced(d.b);
        const double shear = 210000 / 2.6;
        const double truth = disc::rim * disc::torque / (4 * M_PI * disc::thickness * shear) *
                             (std::pow(disc::hub, -2) - std::pow(disc::rim, -2));
        prove({"shell", "Disc turned at its rim, the hub clamped", meshname(type, n, 6 * n),
               "closed", 0, truth, movedby(r, 1, d.at.number(n, 0)).dot(d.along(0)), tolerance});
    }
}

TEST(Clamps, SupportsStandStillAndBearNoTwist) {
    disc d(typeshell3, 4);
    const results r = d.b.solve();
    for (int j = 0; j < d.at.ny; ++j) {
        const int n = d.at.number(0, j);
        EXPECT_EQ(movedby(r, 1, n), vec3::Zero());
        EXPECT_EQ(movedby(r, 1, n, 4), vec3::Zero());
        EXPECT_LT(std::fabs(oblique.col(2).dot(reactedby(r, 1, n, 4))), 1e-9 * disc::torque);
        EXPECT_GT(std::fabs(d.along(j).dot(reactedby(r, 1, n))),
                  0.9 * disc::torque / disc::hub / d.at.ny);
    }
}

// A wall in the xy plane that is clamped at its foot, y = 0.
static grid clampedwall(build& b) {
    const grid wall = b.mesh(typeshell4, b.plate(210000, 0.3, 10), 4, 2,
                             [](double r, double s) { return vec3(400 * r, 200 * s, 0); });
    b.fix(wall.bottom(), clamped);
    b.addcase();
    return wall;
}

// In a 2-D analysis as in a 3-D one that holds what leads out of the plane.
TEST(Clamps, WallsInTwoDimensionsShearAsInThree) {
    double way[2] = {};
    for (const bool twod : {false, true}) {
        build b;
        b.m.twod = twod;
        const grid wall = clampedwall(b);
        b.fixall({3, 4, 5});
        b.spread(1, wall.top(), 1, 1e6);
        const results r = b.solve();
        way[twod] = moved(r, 1, wall.number(2, 2), 1);
        EXPECT_EQ(moved(r, 1, wall.number(2, 0), 6), 0);
    }
    EXPECT_NEAR(way[1], way[0], 1e-12 * way[0]);
}

TEST(Clamps, ABeamStaysClampedBesideAShell) {
    build b;
    const grid wall = clampedwall(b);
    b.spread(1, wall.top(), 1, 1e6);
    const int foot = wall.number(2, 0), tip = b.node(200, -100);
    b.element(typebeam, b.bar(210000, 100, vec3(1000, 1000, 1000)), {foot, tip});
    b.load(1, tip, 1, 1000);
    EXPECT_NEAR(moved(b.solve(), 1, tip, 1), 1000 * 1e6 / (3 * 210000.0 * 1000), 1e-9);
}

TEST(Clamps, AMomentAtASupportGoesIntoIt) {
    build b;
    const grid wall = clampedwall(b);
    b.load(1, wall.number(2, 0), 6, 1e6);
    const results r = b.solve();
    EXPECT_NEAR(reacted(r, 1, wall.number(2, 0), 6), -1e6, 1e-6);
    for (int n = 1; n <= b.m.nnodes(); ++n) EXPECT_EQ(movedby(r, 1, n), vec3::Zero()) << n;
}
