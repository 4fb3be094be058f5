// SPDX-License-Identifier: GPL-3.0-or-later
// Plates, thin and thick, against series solutions and published benchmarks. Sources by their
// letters: docs/verification.md.
#include <cmath>

#include "tests/solver/verify.h"

using grid = build::grid;

static void row(const char* source, const std::string& what, const std::string& mesh,
                double printed, double truth, double value, double tolerance) {
    prove({"plate", what, mesh, source, printed, truth, value, tolerance});
}

// Quarter of a clamped circle, elements of every shape: w = q a^4 / 64 D.
TEST(Verification, ClampedCircle) {
    // D = 1; shear adds q a^2 / 4 k G t
    const double truth = 1.0 / 64 + 1 / (4 * 5.0 / 6 * 4200 * 0.1);
    for (const int type : {typeplate4, typeplate3, typeshell4}) {
        std::vector<double> values;
        for (const auto [n, tolerance] : meshes{{4, 0.02}, {8, 0.005}, {16, 0.0012}}) {
            build b;
            const grid at = b.mesh(type, b.plate(10.92e3, 0.3, 0.1), n, n, [](double r, double s) {
                // a square drawn out to a circle towards its far edges
                const double far = std::max(r, s), near = std::min(r, s);
                const double a = far > 0 ? M_PI / 4 * near / far : 0;
                const vec3 round = far * vec3(std::cos(a), std::sin(a), 0);
                const vec3 corner = r >= s ? round : vec3(round.y(), round.x(), 0);
                return vec3(far * corner + (1 - far) * vec3(r, s, 0) * 0.8);
            });
            b.fix(at.bottom(), {2, 4, 6}), b.fix(at.left(), {1, 5, 6});
            b.fix(at.top(), {3, 4, 5}), b.fix(at.right(), {3, 4, 5});
            b.pressall(1, 3, 1);
            const double middle = moved(solvebalanced(b), 1, at.number(0, 0), 3);
            values.push_back(middle);
            row("T", "Clamped circle, even load", meshname(type, n, n), 0, truth, middle,
                tolerance);
        }
        provequadratic(values, truth);
    }
}

// Skew plate of 30 degrees on simple supports: the moments are infinite at its obtuse corners.
TEST(Verification, SkewPlateOfMorley) {
    const double side = 100, thickness = 0.1, modulus = 1e5;
    const double rigidity = modulus * std::pow(thickness, 3) / (12 * (1 - 0.09));
    const double truth = 0.000408 * std::pow(side, 4) / rigidity;
    for (const int type : {typeplate4, typeshell3})
        for (const auto [n, tolerance] : meshes{{8, 0.06}, {16, 0.035}, {32, 0.025}}) {
            build b;
            const double lean = type == typeshell3 ? -1 : 1;  // triangles along the short diagonal
            const grid at =
                b.mesh(type, b.plate(modulus, 0.3, thickness), n, n, [&](double r, double s) {
                    return vec3(side * (r + lean * s * std::cos(M_PI / 6)), side * s / 2, 0);
                });
            for (const auto& edge : {at.left(), at.right(), at.top(), at.bottom()})
                b.fix(edge, {3});
            b.fixall({1, 2, 6});
            b.pressall(1, 3, 1);
            row("M", "Skew plate of 30 degrees, even load", meshname(type, n, n), 0, truth,
                moved(solvebalanced(b), 1, at.number(n / 2, n / 2), 3), tolerance);
        }
}

// --- rectangles ---------------------------------------------------------------------------------

enum class edges { supported, clamped };

static const char* nameof(edges kind) {
    return kind == edges::clamped ? "Clamped " : "Supported ";
}

// Quarter of a rectangular plate a x c, planes of symmetry at r = 0 and s = 0.
static grid quarter(build& b, int type, int g, int n, double a, double c, edges kind) {
    const grid at =
        b.mesh(type, g, n, n, [&](double r, double s) { return vec3(a / 2 * r, c / 2 * s, 0); });
    b.fix(at.bottom(), {2, 4}), b.fix(at.left(), {1, 5});
    b.fix(at.top(), {3, 5}), b.fix(at.right(), {3, 4});
    if (kind == edges::clamped) b.fix(at.top(), {4}), b.fix(at.right(), {5});
    return at;
}

// Plates 2 x 2 or 2 x 10, thickness 0.0001, even load and load in the middle. Elements five times
// as long as wide feel a point load late.
TEST(Verification, ThinRectangularPlates) {
    const struct {
        edges kind;
        double side;
        double printed[2], truth[2];  // even load, load in the middle
    } rows[] = {{edges::supported, 1, {4.062, 11.60}, {4.062, 11.60}},
                {edges::supported, 5, {12.97, 16.96}, {12.97, 16.96}},
                {edges::clamped, 1, {1.26, 5.60}, {1.2653, 5.612}},
                {edges::clamped, 5, {2.56, 7.23}, {2.604, 7.23}}};
    struct tolerances {
        int n;
        double even, point, pointlong;
    };
    const struct {
        int type;
        std::vector<tolerances> sizes;
    } kinds[] = {
        {typeplate4, {{4, 0.005, 0.012, 0.1}, {8, 0.005, 0.003, 0.04}, {16, 0.005, 0.003, 0.012}}},
        {typeplate3, {{4, 0.09, 0.02, 0.1}, {8, 0.02, 0.02, 0.04}, {16, 0.02, 0.02, 0.012}}},
        {typeshell4, {{8, 0.005, 0.003, 0.04}}},
        {typeshell3, {{8, 0.02, 0.02, 0.04}}}};
    for (const auto& p : rows)
        for (const auto& [type, sizes] : kinds)
            for (const tolerances& t : sizes) {
                build b;
                const int g = b.plate(1.7472e7, 0.3, 1e-4);
                const grid at = quarter(b, type, g, t.n, 2, 2 * p.side, p.kind);
                b.addcase();
                b.pressall(1, 3, 1e-4);
                b.load(2, at.number(0, 0), 3, 1e-4);
                const results r = solvebalanced(b);
                const std::string name =
                    nameof(p.kind) + std::string(p.side == 1 ? "plate 1 : 1, " : "plate 1 : 5, ");
                const std::string mesh = meshname(type, t.n, t.n);
                row("MH", name + "even load", mesh, p.printed[0], p.truth[0],
                    moved(r, 1, at.number(0, 0), 3), t.even);
                row("MH", name + "load in the middle", mesh, p.printed[1], p.truth[1],
                    moved(r, 2, at.number(0, 0), 3), p.side == 1 ? t.point : t.pointlong);
            }
}

// w D / q a^4 of square plates with shear, supported edges held against tilting along them.
TEST(Verification, ThickSquarePlates) {
    const struct {
        edges kind;
        double thickness, truth;
    } rows[] = {{edges::supported, 0.1, 0.0042728},
                {edges::supported, 0.2, 0.0049043},
                {edges::clamped, 0.1, 0.0015045},
                {edges::clamped, 0.2, 0.0021723}};
    for (const auto& p : rows)
        for (const int type : {typeplate4, typeplate3})
            for (const int n : {4, 8, 16}) {
                build b;
                const int g = b.plate(10.92, 0.3, p.thickness);
                const grid at = quarter(b, type, g, n, 1, 1, p.kind);
                b.pressall(1, 3, std::pow(p.thickness, 3));  // the rigidity D
                const std::string ratio = p.thickness < 0.15 ? "0.1" : "0.2";
                row("L", nameof(p.kind) + ("thick plate, t / a = " + ratio), meshname(type, n, n),
                    0, p.truth, moved(solvebalanced(b), 1, at.number(0, 0), 3),
                    type == typeplate4 ? 0.004
                    : n == 4           ? 0.04
                                       : 0.01);
            }
}

// Pressure that grows from nothing at one edge: half the deflection of the even load in the middle,
// and the moments there (Timoshenko and Woinowsky-Krieger, table 13).
TEST(Verification, SupportedPlateUnderWaterPressure) {
    for (const int n : {8, 16}) {
        build b;
        const grid at = b.mesh(typeplate4, b.plate(10.92e6, 0.3, 0.01), n, n,
                               [](double r, double s) { return vec3(r, s, 0); });
        b.fix(at.bottom(), {3, 5}), b.fix(at.top(), {3, 5});
        b.fix(at.left(), {3, 4}), b.fix(at.right(), {3, 4});
        for (int e = 1; e <= b.m.nelems(); ++e)
            b.press(1, e, 3, middleof(elementat(b.m, b.s, e)).x());
        const results r = solvebalanced(b);
        const int middle = at.number(n / 2, n / 2);
        const std::string mesh = meshname(typeplate4, n, n);
        row("T", "Supported plate, water pressure, deflection", mesh, 0.00203, 0.0020312,
            moved(r, 1, middle, 3), 0.003);
        double moment = 0;
        for (std::size_t i = 0; i < r.plates.elements.size(); ++i) {
            const elementdef& def = b.m.elements[std::size_t(r.plates.elements[i])];
            for (int c = 0; c < 4; ++c)
                if (def.node[c] == middle)
                    moment += r.plates.of(1, r.plates.first[i] + c)[3] / 4 * 0.01 * 0.01 / 6;
        }
        row("T", "Supported plate, water pressure, moment", mesh, 0.0239, 0.02395, moment, 0.02);
    }
}

// Three edges supported, the fourth free: the middle of that edge (Timoshenko and
// Woinowsky-Krieger, table 40). As thin as to be without shear.
TEST(Verification, SupportedPlateWithAFreeEdge) {
    for (const int type : {typeplate4, typeplate3})
        for (const auto [n, tolerance] : meshes{{4, 0.04}, {8, 0.012}, {16, 0.003}}) {
            build b;
            const grid at = b.mesh(type, b.plate(10.92e9, 0.3, 0.001), n, n,
                                   [](double r, double s) { return vec3(r, s, 0); });
            b.fix(at.bottom(), {3, 5});
            b.fix(at.left(), {3, 4}), b.fix(at.right(), {3, 4});
            for (int e = 1; e <= b.m.nelems(); ++e) b.press(1, e, 3, 1);
            row("T", "Supported plate with a free edge, its middle", meshname(type, n, n), 0.01286,
                0.0128524, moved(solvebalanced(b), 1, at.number(n / 2, n), 3), tolerance);
        }
}

// A strip on two clamps, one of which moves, by Timoshenko's beam: F l^3 / 12 E I + F l / k G A.
// The bending varies along each element, most where one is as long as the strip.
TEST(Verification, ThickStripsBetweenClamps) {
    struct mesh {
        int nx, ny;
        double lean, tolerance;  // of the edges across, in widths
    };
    for (const int type : {typeplate4, typeshell4, typeplate3})
        for (const double thickness : {0.4, 0.8})
            for (const auto& [nx, ny, lean, tolerance] :
                 {mesh{1, 1, 0, 1e-6}, {1, 3, 0, 1e-6}, {2, 2, 0, 1e-6}, {4, 1, 0.5, 0.07}}) {
                if (type == typeplate3 && nx < 4) continue;
                const double length = 8, width = 1, modulus = 1e6;
                build b;
                const grid at =
                    b.mesh(type, b.plate(modulus, 0, thickness), nx, ny, [&](double r, double s) {
                        const double i = std::round(r * nx);
                        const bool ends = i == 0 || i == nx;
                        const double way = std::fmod(i, 2) == 0 ? 1 : -1;
                        return vec3(length * r + (ends ? 0 : way * lean * (2 * s - 1)), s, 0);
                    });
                b.fix(at.left(), clamped), b.fix(at.right(), {1, 2, 4, 5, 6});
                b.spread(1, at.right(), 3, 1);
                const double section = width * thickness;
                const double truth =
                    std::pow(length / thickness, 2) * length / (modulus * section) +
                    length / (5.0 / 6 * modulus / 2 * section);
                const std::string name = "Strip between clamps, l / t = " +
                                         std::to_string(std::lround(length / thickness)) +
                                         (lean > 0 ? ", trapezoids" : "");
                row("closed", name, meshname(type, nx, ny), 0, truth,
                    moved(solvebalanced(b), 1, at.number(nx, 0), 3),
                    type == typeplate3 ? 0.02 : tolerance);
            }
}

// T l / G J of bars with thickness 1, one and two elements wide, free to warp. J: the series of
// Timoshenko and Goodier, Theory of elasticity, art. 109.
TEST(Verification, TwistedStrips) {
    struct mesh {
        int nx, ny;
        double tolerance;
    };
    for (const double width : {1.0, 2.0, 4.0, 8.0, 100.0})
        for (const auto& [nx, ny, tolerance] : {mesh{40, 1, 0.05}, {10, 1, 0.05}, {20, 2, 0.05}}) {
            const double length = 40 * width, modulus = 2.6e6, thickness = 1;
            build b;
            const grid at =
                b.mesh(typeshell4, b.plate(modulus, 0.3, thickness), nx, ny,
                       [&](double r, double s) { return vec3(length * r, width * s, 0); });
            b.fix(at.left(), {1, 2, 3, 4});
            b.fix(at.number(0, 0), {5, 6});
            b.load(1, at.number(nx, 0), 3, -1 / width);
            b.load(1, at.number(nx, ny), 3, 1 / width);
            double sum = 0;
            for (int n = 1; n < 100; n += 2)
                sum += std::tanh(n * M_PI * width / 2) / std::pow(n, 5);
            const double inertia = width / 3 * (1 - 192 * sum / (std::pow(M_PI, 5) * width));
            const results r = solvebalanced(b);
            row("closed", "Twisted strip, b / t = " + std::to_string(std::lround(width)),
                meshname(typeshell4, nx, ny), 0, length / (1e6 * inertia),
                (moved(r, 1, at.number(nx, ny), 3) - moved(r, 1, at.number(nx, 0), 3)) / width,
                tolerance);
        }
}

// The edge along the cut is not free: what joins it hands on the rotations.
TEST(Shells, StripsJoinedAlongTheirMiddleTwistAsOne) {
    const double length = 8, width = 2, modulus = 1e6, thickness = 0.6, stiff = 1e10;
    const int nx = 8;
    for (const int type : {typeshell4, typeshell3}) {
        double whole = 0;
        for (const int joint : {0, int(typerigid), int(typespring2)}) {
            build b;
            const int g = b.plate(modulus, 0.3, thickness);
            const auto part = [&](double from, int rows) {
                return b.mesh(type, g, nx, rows, [&](double r, double s) {
                    return vec3(length * r, width * (from + s * rows) / 2, 0);
                });
            };
            const grid at = part(0, joint == 0 ? 2 : 1), other = joint == 0 ? at : part(1, 1);
            const int by = joint == typespring2 ? b.spring(stiff * mat6::Identity()) : b.group({});
            for (int i = 0; i <= nx && joint != 0; ++i)
                b.element(joint, by, {at.number(i, 1), other.number(i, 0)});
            for (const grid& half : {at, other}) b.fix(half.left(), {1, 2, 3, 4, 5, 6});
            const int soft = b.spring(1e-3 * mat6::Identity());  // leaves the outer edges free
            for (const int n : at.bottom())
                if (joint != 0) b.element(typespring, soft, {n});
            const int near = at.number(nx, 0), far = other.top().back();
            b.load(1, near, 3, -1);
            b.load(1, far, 3, 1);
            const results r = solvebalanced(b);
            const double twist = moved(r, 1, far, 3) - moved(r, 1, near, 3);
            if (joint == 0) whole = twist;
            EXPECT_NEAR(twist / whole, 1, 1e-4) << type << " joined by " << joint;
        }
    }
}
