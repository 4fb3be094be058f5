// SPDX-License-Identifier: GPL-3.0-or-later
// Sea and wind: the wave's formulas, forces on members against integrals in closed form, wind and
// water on plates.
#include <algorithm>
#include <cmath>

#include "tests/solver/verify.h"

static const double gravity = 9.80665, water = 1025, air = 1.225;

// A member from one place to another, in metres, held at all nodes, so that the reactions are the
// nodal loads.
static build member(int type, const vec3& from, const vec3& to, int pieces, double diameter = 1) {
    build b;
    b.inmetres();
    const double inner = diameter - 0.04;
    b.chain(type,
            b.bar(2.1e11, M_PI / 4 * (diameter * diameter - inner * inner),
                  {M_PI / 64 * (std::pow(diameter, 4) - std::pow(inner, 4)), 0, 0}),
            from, to, pieces);
    b.fixall();
    b.m.cases.resize(1);
    return b;
}

static vec6 totalof(build& b, int lc = 1) {
    return solvebalanced(b).reactions.load[std::size_t(lc)];
}

// Nothing but this case on it.
static vec6 totalunder(build& b, int type, std::initializer_list<double> par) {
    b.onlycase(type, par);
    return totalof(b);
}

static void row(const char* mesh, const std::string& what, double truth, double value,
                double tolerance = 1e-5) {
    prove({"sea", what, mesh, "closed", 0, truth, value, tolerance});
}

// --- the wave -----------------------------------------------------------------------------------

TEST(Wave, DispersionHoldsToTheLastDigits) {
    for (const double depth : {0.5, 5.0, 30.0, 4000.0})
        for (const double period : {0.5, 3.0, 12.0, 60.0, 3000.0}) {
            const double omega = 2 * M_PI / period;
            const double k = wavenumber(omega, depth, gravity);
            const double left = omega * omega, right = gravity * k * std::tanh(k * depth);
            EXPECT_NEAR(right / left, 1, 1e-15) << depth << " " << period;
        }
}

static const double height = 8, period = 10, depth = 30, diameter = 1;

static const double omega = 2 * M_PI / period, sea = water * M_PI / 4;

// Integral over the column 0..depth of the still water, y from the bed.
template <typename function>
static double overcolumn(const function& f) {
    const int points = 20000;
    double sum = 0;
    for (int i = 0; i < points; ++i) sum += f((i + 0.5) * depth / points) * depth / points;
    return sum;
}

// Stretching makes the column of height d + eta one of height d: forces grow by the ratio, moments
// about the bed by its square.
TEST(Verification, WaveOnAVerticalCylinder) {
    const double k = wavenumber(omega, depth, gravity), a = height / 2;
    for (const double shift : {0.0, 0.125, 0.3, 0.8}) {
        for (const int pieces : {1, 40}) {
            build b = member(typepipe, {0, 0, -depth}, {0, 0, 10}, pieces);
            const vec6 load = totalunder(b, casewave, {height, period, 0, shift, depth});
            const double t = -2 * M_PI * shift, ratio = 1 + a * std::cos(t) / depth;
            const double drag = 0.5 * water * b.s.cd * diameter * std::pow(a * omega, 2) *
                                std::cos(t) * std::fabs(std::cos(t));
            const double inertia = sea * b.s.cm * a * omega * omega * std::sin(t);
            const auto push = [&](double y) {
                const double part = std::cosh(k * y) / std::sinh(k * depth);
                return drag * part * part + inertia * part;
            };
            const double force = ratio * overcolumn(push);
            const double moment =  // about the origin
                ratio * ratio * overcolumn([&](double y) { return y * push(y); }) - depth * force;
            char name[80];
            std::snprintf(name, sizeof name, "Morison, vertical tube, shift %g, ", shift);
            const char* const mesh = pieces == 1 ? "PIPE 1" : "PIPE 40";
            row(mesh, std::string(name) + "force, N", force, load[0]);
            row(mesh, std::string(name) + "moment about the origin, Nm", moment, load[4]);
            EXPECT_NEAR(load[1], 0, 1e-6 * std::fabs(force));
        }
    }
}

// A cylinder that leans across the waves, under the crest: every place has the same phase.
TEST(Verification, WaveOnALeaningCylinder) {
    const double k = wavenumber(omega, depth, gravity), deep = std::sinh(k * depth);
    const double lean = 0.6;  // horizontal run over height
    build b = member(typebeam, {0, -lean * depth, -depth}, {0, lean * 8, 8}, 6);
    b.field(1, fieldiyy) = b.field(1, fieldixx);
    b.field(1, fieldizz) = 2 * b.field(1, fieldixx);
    b.field(1, fieldwxx) = b.field(1, fieldwyy) = 2 * b.field(1, fieldixx) / diameter;
    const vec6 load = totalunder(b, casewave, {height, period, 0, 0, depth});
    const double a = height / 2, ratio = 1 + a / depth, slant = std::hypot(1, lean);
    const double drag = 0.5 * water * b.s.cd * std::pow(a * omega, 2) * ratio * slant *
                        overcolumn([&](double y) { return std::pow(std::cosh(k * y) / deep, 2); });
    row("BEAM 6", "Morison, bar leaning across the waves, drag, N", drag, load[0]);
    // The vertical acceleration's part across the member, cos^2 = 1 / slant^2 along it.
    const double lift = -sea * b.s.cm * a * omega * omega * ratio * slant *
                        overcolumn([&](double y) { return std::sinh(k * y) / deep; });
    row("BEAM 6", "Morison, bar leaning across the waves, inertia, N",
        lift * (1 - 1 / (slant * slant)), load[2]);
    EXPECT_NEAR(load[1], -lift * lean / (slant * slant), 1e-5 * std::fabs(lift));
}

// In the plane of the waves the phase runs along the member: an independent sum of many points.
TEST(Marine, MembersAlongTheWaveAgreeWithAFineSum) {
    const struct {
        const char* name;
        vec3 from, to;
    } members[] = {{"sloping", {-20, 3, -30}, {45, 8, 9}},
                   {"through several crests", {-150, 0, 0.5}, {180, 40, -1}},
                   {"below the bed", {0, 0, -60}, {10, 0, -25}},
                   {"downward", {5, 0, 10}, {-5, 0, -30}}};
    for (const auto& m : members) {
        const double heading = 20;
        const linearwave w = makewave(height, period, heading, 0.4, depth, gravity);
        const vec3 axis = (m.to - m.from).normalized();
        const int points = 400000;
        const double step = (m.to - m.from).norm() / points;
        vec3 sum = vec3::Zero();
        for (int i = 0; i < points; ++i) {
            const vec3 at = m.from + (i + 0.5) * step * axis;
            if (at.z() > w.surface(at) || at.z() < -depth) continue;
            vec3 u, a;
            w.flow(at, u, a);
            u -= u.dot(axis) * axis;
            a -= a.dot(axis) * axis;
            sum += step * water * (0.5 * 1.05 * u.norm() * u + 1.2 * M_PI / 4 * a);
        }
        for (const int pieces : {1, 3, 30}) {
            build b = member(typepipe, m.from, m.to, pieces);
            const vec6 load = totalunder(b, casewave, {height, period, heading, 0.4, depth});
            for (int k = 0; k < 3; ++k)
                EXPECT_NEAR(load[k], sum[k], 1e-4 * sum.norm()) << m.name << " " << pieces;
        }
    }
}

// Millimetres and kilonewtons, a bar of the same area: only the units differ.
TEST(Marine, UnitsOfTheModelAreTakenIntoAccount) {
    build b = member(typepipe, {0, 0, -20}, {3, 1, 12}, 2);
    b.addcase(casewave, {4, 8, 25, 0.1, 25});
    b.addcase(casewind, {30, 70});
    build c = b;
    for (vec3& x : c.m.nodes) x *= 1000;
    c.field(1, fieldthickness) *= 1e6, c.field(1, fieldixx) *= 1e12;
    c.s.length = 0.001, c.s.force = 1000;
    vec6 scale;
    scale << 1e-3, 1e-3, 1e-3, 1, 1, 1;
    for (int lc = 1; lc <= 2; ++lc) {
        const vec6 metres = totalof(b, lc).cwiseProduct(scale);
        EXPECT_LT((totalof(c, lc) - metres).norm(), 1e-9 * metres.norm());
    }
}

TEST(Marine, BadSeasAreRefusedAndDoubtfulOnesTold) {
    const struct {
        std::initializer_list<double> par;
        int type;
        const char* words;
    } rows[] = {{{-1, 8, 0, 0, 20}, casewave, "height H below 0"},
                {{4, 0, 0, 0, 20}, casewave, "period T"},
                {{4, 8, 0, 0, 0}, casewave, "depth WD"},
                {{50, 8, 0, 0, 20}, casewave, "below the sea bed"},
                {{1, 0.01, 0, 0, 20}, casewave, "wave lengths long"},
                {{1, 8, 1e29, 0, 20}, casewave, "a direction of 1e+29 degrees"},
                {{1, 8, 0, 1e29, 20}, casewave, "a Shift of 1e+29 wave lengths"},
                {{20, -1e29}, casewind, "a direction of -1e+29 degrees"},
                {{0, -1, 1}, casebuoyancy, "depth WD below 0"},
                {{0, 10, -1}, casebuoyancy, "density below 0"}};
    for (const auto& bad : rows) {
        build b = member(typepipe, {0, 0, -20}, {0, 0, 2}, 1);
        b.onlycase(bad.type, bad.par);
        expectwords(b.refusal(), {bad.words});
    }
    build b = member(typepipe, {0, 0, -20}, {0, 0, 2}, 1);
    totalunder(b, casewave, {9, 6, 0, 0, 20});
    ASSERT_EQ(b.log.warnings().size(), 1u);
    expectwords(b.log.warnings()[0], {"breaks"});
    EXPECT_EQ(totalunder(b, casewave, {0, 6, 0, 0, 20}).norm(), 0) << "no wave";
    build flat = member(typepipe, {0, 0, 0}, {3, 2, 0}, 1);
    flat.addcase(casewind, {30, 0});
    flat.m.twod = true;
    expectwords(flat.refusal(), {"2-D"});
}

TEST(Marine, MembersWithoutAnOutlineAreTold) {
    const struct {
        int type, kind;
        double modulus;  // W xx and W yy
        vec3 from, to;
        bool told;
    } rows[] = {{typebeam, casewave, 0, {0, 0, -20}, {0, 0, 5}, true},
                {typebeam, casewave, 1, {0, 0, -20}, {0, 0, 5}, false},
                {typetruss, casewind, 0, {0, 0, -20}, {0, 0, 5}, true},
                {typepipe, casewave, 0, {0, 0, -20}, {0, 0, 5}, false},
                {typebeam, casewave, 0, {0, 0, 2.1}, {9, 0, 5}, false},  // over the crest
                {typebeam, casewind, 0, {0, 0, -9}, {0, 0, 0}, false},   // under the surface
                {typebeam, casebuoyancy, 0, {0, 0, -9}, {0, 0, 0}, false}};
    for (const auto& one : rows) {
        SCOPED_TRACE(testing::Message() << one.type << " " << one.kind << " " << one.from.z());
        build b;
        b.inmetres();
        const int g = b.bar(2e11, 0.03, {1, 1, 1});
        b.field(g, fieldwxx) = b.field(g, fieldwyy) = one.modulus;
        b.single(one.type, g, {one.from, one.to});
        b.fixall();
        b.onlycase(one.kind, {4, 8, 0, 0, 30});
        b.solve();
        EXPECT_EQ(b.log.text().find("count as round bars") != std::string::npos, one.told);
    }
}

// They are masses, which an acceleration loads and the sea does not.
TEST(Marine, NodalRowsUnderSeaAndWindAreTold) {
    for (const int type : {casewave, casewind, casebuoyancy, caseaccx}) {
        build b = member(typepipe, {0, 0, -20}, {0, 0, 2}, 1);
        b.onlycase(type, {4, 8, 0, 0, type == caseaccx ? 1.0 : 20.0});
        b.load(1, 2, 1, 500);
        b.solve();
        const auto told = std::ranges::count_if(b.log.warnings(), [](const std::string& w) {
            return w.find("its 1 nodal row(s) are masses") != w.npos;
        });
        EXPECT_EQ(told, type >= casewave) << type;
    }
}

// --- wind ---------------------------------------------------------------------------------------

TEST(Verification, WindOnMembers) {
    const double speed = 35, exponent = 0.125, top = 24;
    const double rise = 2 * exponent + 1;
    // Of (z / 10)^(2 exponent) from 0 to top.
    const double column = 10 * std::pow(top / 10, rise) / rise;
    const double pressure = 0.5 * air * speed * speed;
    build b = member(typepipe, {0, 0, -6}, {0, 0, top}, 1);
    row("PIPE 1", "Wind on a vertical tube, N", pressure * 0.5 * column,
        totalunder(b, casewind, {speed, 0})[0]);
    // Leaning with the wind by 3:4, the part across the member counts.
    build c = member(typepipe, {0, 0, 0}, {0.75 * top, 0, top}, 3);
    const vec6 load = totalunder(c, casewind, {speed, 0});
    const double cosine = 0.8, across = pressure * 0.5 * column / cosine * cosine * cosine;
    row("PIPE 3", "Wind on a leaning tube, N", across * cosine, load[0]);
    EXPECT_NEAR(load[2], -across * 0.6, 1e-5 * across);
    // A flat bar: the side that faces the wind. e2 of a vertical member is y, e3 is -x.
    build d = member(typebeam, {0, 0, 0}, {0, 0, top}, 2);
    const double w2 = 0.3, w3 = 0.2;
    d.field(1, fieldixx) = w2 * std::pow(w3, 3) / 12, d.field(1, fieldwxx) = w2 * w3 * w3 / 6;
    d.field(1, fieldiyy) = w3 * std::pow(w2, 3) / 12, d.field(1, fieldwyy) = w3 * w2 * w2 / 6;
    d.field(1, fieldizz) = 1e-4;
    row("BEAM 2", "Wind on a flat bar, wide side, N", pressure * 1.5 * w2 * column,
        totalunder(d, casewind, {speed, 0})[0]);
    row("BEAM 2", "Wind on a flat bar, narrow side, N", pressure * 1.5 * w3 * column,
        totalunder(d, casewind, {speed, 90})[1]);
}

// A sheet of shells with all its nodes held.
static build wall(int type, int nx, int ny, const vec3& from, const vec3& across, const vec3& up) {
    build b;
    b.inmetres();
    b.mesh(type, b.plate(2e11, 0.3, 0.05), nx, ny,
           [&](double r, double s) { return vec3(from + r * across + s * up); });
    b.fixall();
    return b;
}

// A wall of plates, turned by 30 degrees to the wind, from 5 m below the ground.
TEST(Verification, WindOnAWall) {
    const double speed = 30, top = 16, width = 6, turn = M_PI / 6, c = std::cos(turn);
    for (const int type : {typeshell4, typeshell3}) {
        build b = wall(type, 2, 7, {0, 0, -5}, {width * std::sin(turn), width * c, 0}, {0, 0, 21});
        const vec6 load = totalunder(b, casewind, {speed, 0});
        const double column = 10 * std::pow(top / 10, 1.25) / 1.25;
        const double push = 0.5 * air * 1.5 * std::pow(speed * c, 2) * width * column;
        row(meshname(type, 2, 7).c_str(), "Wind on a turned wall, N", push * c, load[0], 1e-3);
        EXPECT_NEAR(load[1], -push * std::sin(turn), 1e-3 * push);
    }
}

// --- buoyancy -----------------------------------------------------------------------------------

// Density in force a volume, levels in model units.
TEST(Verification, WaterOnASunkenBoxLiftsItsDisplacement) {
    const double weight = 10.05, level = 1.3, side = 2, low = -1.1, high = 2.4;
    for (const int type : {typeshell4, typeshell3}) {
        build b;
        const int g = b.plate(2e8, 0.3, 0.05);
        const auto face = [&](const vec3& o, const vec3& u, const vec3& v) {
            b.mesh(type, g, 3, 3, [&](double r, double s) { return vec3(o + r * u + s * v); });
        };
        const vec3 o(0, 0, low), x(side, 0, 0), y(0, side, 0), z(0, 0, high - low);
        face(o, y, x), face(o + z, x, y);  // normals outwards
        face(o, x, z), face(o + y, z, x), face(o, z, y), face(o + x, y, z);
        b.fixall();
        const vec6 load = totalunder(b, casebuoyancy, {level, 1000, weight});
        const double lift = weight * side * side * (level - low);
        row((meshname(type, 3, 3) + " a side").c_str(), "Buoyancy of a sunken box", lift, load[2],
            1e-9);
        vec6 wanted;  // through the middle
        wanted << 0, 0, lift, lift * side / 2, -lift * side / 2, 0;
        EXPECT_LT((load - wanted).norm(), 1e-9 * lift);
    }
}

TEST(Verification, WaterOnAWallBetweenItsLevels) {
    const double weight = 9.81, level = 3.3, water2 = 2.0, width = 1.5;
    for (const int type : {typeshell4, typeshell3}) {
        build b = wall(type, 2, 4, {0, 0, 0}, {width, 0, 0}, {0, 0, 4});
        const vec6 load = totalunder(b, casebuoyancy, {level, water2, weight});
        const double push = weight * width * water2 * water2 / 2;  // e3 is -y, so along +y
        row(meshname(type, 2, 4).c_str(), "Water on a wall", push, load[1], 1e-9);
        EXPECT_NEAR(load[3], -push * (level - 2 * water2 / 3), 1e-8 * push) << "centre of pressure";
    }
}

TEST(Verification, WaterLiftsMembersByTheirDisplacement) {
    const double weight = 10055, length = 5 / std::cos(std::atan2(6, 12));
    build b = member(typepipe, {0, 0, -8}, {6, 0, 4}, 5, 0.8);
    const vec6 load = totalunder(b, casebuoyancy, {1, 5, weight});  // from z = -4 to 1
    row("PIPE 5", "Buoyancy of a sealed tube, N", weight * M_PI / 4 * 0.64 * length, load[2], 1e-9);
    EXPECT_EQ(totalunder(b, casebuoyancy, {-20, 5, weight}).norm(), 0) << "no water here";
}
