// SPDX-License-Identifier: GPL-3.0-or-later
// Forces and deflections along members, against closed forms.
#include "solver/results/members.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <stdexcept>

#include "core/textfile.h"
#include "solver/results/writeresults.h"
#include "tests/solver/verify.h"

static const double modulus = 2e5, i2 = 3e6, i3 = 2e6, area = 900, length = 2000;

// BASE.MEM of one case: by line element a column a station.
static std::vector<memberline> membersof(build& b, const results& r, int lc = 1) {
    tempfolder in;
    b.m.base = in / "m";
    writelines(b.m, b.s, r.dofs, r.u, r.lines);
    textin file(in / "m.MEM");
    std::vector<memberline> lines;
    for (int block = 1; block <= lc; ++block) {
        lines.clear();
        while (file.word() != "END") {
            EXPECT_EQ(file.whole(), memberstations);
            lines.emplace_back();
            for (int k = 0; k < memberstations * membervalues; ++k)
                lines.back().data()[k] = file.number();
        }
    }
    return lines;
}

enum column { place, axial, sheary, shearz, torsion, momenty, momentz, alongy, alongz };

static void expectcolumn(const memberline& line, column which,
                         const std::function<double(double)>& wanted, double tolerance,
                         const char* what) {
    double size = 0;
    for (int i = 0; i < memberstations; ++i) size = std::max(size, std::fabs(wanted(i / 20.0)));
    for (int i = 0; i < memberstations; ++i)
        EXPECT_NEAR(line(which, i), wanted(i / 20.0), tolerance * size + 1e-9)
            << what << " at station " << i;
}

static build clampedbeam(double shear) {
    build b;
    b.s.shear = shear;
    b.fix(b.chain(typebeam, b.bar(modulus, area, {i2, i3, 4e6}, 8e-9), {0, 0, 0},
                  {length * 0.6, length * 0.8, 0}, 1),
          clamped);
    return b;
}

// Even loads along all three axes on one element, with and without shear: exact to Singles.
TEST(Members, EvenLoadsOnACantileverAndAClampedBeam) {
    for (const double shear : {0.0, 0.8}) {
        const double soft = shear > 0 ? 1 / (shear * area * modulus / 2.6) : 0;
        const double l = length, p = 3, q = -2, n = 5;
        build b = clampedbeam(shear);
        b.press(1, 1, 1, n), b.press(1, 1, 2, p), b.press(1, 1, 3, q);
        memberline line = membersof(b, b.solve())[0];
        const auto tail = [&](double x) { return l * (1 - x); };
        expectcolumn(
            line, axial, [&](double x) { return n * tail(x); }, 1e-6, "N");
        expectcolumn(
            line, sheary, [&](double x) { return p * tail(x); }, 1e-6, "Vy");
        expectcolumn(
            line, momentz, [&](double x) { return p * tail(x) * tail(x) / 2; }, 1e-6, "Mz");
        expectcolumn(
            line, momenty, [&](double x) { return -q * tail(x) * tail(x) / 2; }, 1e-6, "My");
        const auto cantilever = [&](double load, double inertia) {
            return [=](double x) {
                const double a = x * l;
                return load * a * a * (6 * l * l - 4 * l * a + a * a) / (24 * modulus * inertia) +
                       load * soft * (l * a - a * a / 2);
            };
        };
        expectcolumn(line, alongy, cantilever(p, i3), 1e-6, "v");
        expectcolumn(line, alongz, cantilever(q, i2), 1e-6, "w");

        b.fix(2, clamped);
        line = membersof(b, b.solve())[0];
        expectcolumn(
            line, alongz,
            [&](double x) {
                const double a = x * l;
                return q * a * a * (l - a) * (l - a) / (24 * modulus * i2) +
                       q * soft * a * (l - a) / 2;
            },
            1e-6, "w, clamped");
        expectcolumn(
            line, momenty, [&](double x) { return -q * l * l * (1 - 6 * x + 6 * x * x) / 12; },
            1e-6, "My, clamped");
    }
}

// Seven digits of the largest, the last ones by the same place.
TEST(Members, NumbersOfAColumnShareTheirLastPlace) {
    const struct {
        double largest, value;
        const char* text;
    } rows[] = {{71.874512, 71.874512, "71.87451"},
                {71.874512, -0.000049, "-0.00005"},
                {71.874512, 0.000004, "0"},
                {999999.96, 999999.96, "1000000"},
                {1234567.4, -1234567.4, "-1234567"},
                {1234567890, 1234567890, "1234568E3"},
                {1234567890, 1234000000, "1234000E3"},
                {1234567890, 400, "0"},
                {12345678.9, 12345678.9, "1234568E1"},
                {0.09, 0.00000016, "0.00000016"},
                {0.00012345678, 0.00012345678, "0.0001234568"},
                {0.000012345678, 0.000012345678, "1234568E-11"},
                {4.5e-12, -4.5e-12, "-45E-13"},
                {0.0125, 0.0125, "0.0125"},
                {0.0125, 0.00999999999, "0.01"},
                {0, 0, "0"},
                {1e-300, 1e-300, "0"},
                {20, 20, "20"}};
    for (const auto& row : rows) {
        double largest[numbertable::kinds] = {}, values[numbertable::kinds] = {};
        const int kind = int(&row - rows) % numbertable::kinds;
        largest[kind] = row.largest;
        values[kind] = row.value;
        const numbertable table(largest);
        numbertable::row rounded;
        table.round(values, 0, 1, &rounded);
        char text[longestnumber];
        EXPECT_EQ(std::string(text, table.write(text, rounded, kind)), row.text) << row.value;
    }
}

// More of them than are rounded at once.
TEST(Members, EveryNumberOfATableStandsInItsRow) {
    const int count = 75, apart = numbertable::kinds + 1;
    double largest[numbertable::kinds], values[count * apart];
    std::fill_n(largest, numbertable::kinds, count * apart);
    for (int i = 0; i < count * apart; ++i) values[i] = i;
    numbertable::row rows[count + 1] = {};
    const numbertable table(largest);
    table.round(values, apart, count, rows);
    char text[longestnumber];
    for (int i = 0; i < count * apart; ++i)
        if (const int kind = i % apart; kind < numbertable::kinds) {
            EXPECT_EQ(std::string(text, table.write(text, rows[i / apart], kind)),
                      std::to_string(i));
        }
    EXPECT_EQ(rows[count].text[0][0], 0) << "nothing is written behind the last row";
}

// Ten digits, as a reader takes them; the same text as in full where ten are enough.
TEST(Rounded, NumbersReadBackToTheTenthDigit) {
    const struct {
        double value;
        const char* text;
    } rows[] = {{0, "0"},
                {-2000, "-2000"},
                {0.1f, "0.1000000015"},
                {99999999995, "100000000000"},
                {9.99999999996, "10"},
                {-0.00012345678901, "-0.000123456789"},
                {1.5e-7, "1.5E-07"},
                {-4e-123, "-4E-123"},
                {123456789012345, "123456789000000"},
                {1e15, "1E+15"},
                {5e-324, "5E-324"},
                {1e300, "1E+300"}};
    char text[2 * longestnumber];
    for (const auto& row : rows)
        EXPECT_EQ(std::string(text, writerounded(text, row.value)), row.text) << row.value;
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> part(1, 10), power(-289, 289);
    for (int i = 0; i < 20000; ++i) {
        const double value = part(random) * std::pow(10, i % 3 == 0 ? power(random) : i % 37 - 18);
        char* const end = writerounded(text, i % 2 == 0 ? value : -value);
        double read = 0;
        ASSERT_TRUE(readnumber({text, end}, read) && end - text <= longestnumber / 2 + 1);
        EXPECT_NEAR(std::fabs(read), value, 5.1e-10 * value) << std::string(text, end);
        ASSERT_EQ(std::signbit(read), i % 2 != 0);
    }
}

// Whichever thread makes them, and none waits for one that failed.
TEST(Rows, StandInTheirOrderAndEndWithAFault) {
    tempfolder in;
    const int count = 20000, blockrows = 7;
    for (const int n : {1, 4}) {
        setthreads(n);
        std::string wanted;
        for (int i = 0; i < count; ++i) wanted += std::string(std::size_t(i % 300), 'x') + "\r\n";
        const auto row = [](int i, rowtext& text) {
            text.put(std::string(std::size_t(i % 300), 'x'));
            text.endline();
        };
        textout out(in / "rows");
        writerows(out, count, blockrows, row);
        out.commit();
        EXPECT_TRUE(readwhole(in / "rows") == wanted) << n << " threads";
        const auto faulty = [&](int i, rowtext& text) {
            if (i == count / 2) throw std::length_error("row");
            row(i, text);
        };
        EXPECT_THROW(writerows(out, count, blockrows, faulty), std::length_error);
    }
    setthreads(0);
}

// In 2-D a section turned about the axis bends in the plane of the model alone, as one of
// I3 c^2 + I2 s^2 does; each axis has the moment of its own stiffness at the one curvature.
TEST(Members, TurnedSectionsBendInThePlaneOfA2DModel) {
    const double l = 300, q = 4, tip = 700;  // short: shear counts
    for (const double turned : {0.0, 33.0, 60.0, -75.0, 90.0})
        for (const double second2 : {i2, 0.0}) {
            if (second2 == 0 && turned == 90) continue;  // refused
            const double c = std::cos(turned * M_PI / 180), s = std::sin(turned * M_PI / 180);
            const double flat = i3 * c * c + second2 * s * s, shear = second2 > 0 ? 0.5 : 0;
            const double soft = shear > 0 ? 1 / (shear * area * modulus / 2.6) : 0;
            build b;
            b.s.shear = shear;
            const int g = b.bar(modulus, area, {second2, i3, 0});
            b.field(g, fieldrotation) = turned;
            b.fix(b.chain(typebeam, g, {50, 20, 0}, {50 + l * 0.6, 20 + l * 0.8, 0}, 1), {1, 2, 6});
            b.press(1, 1, 2, q * c), b.press(1, 1, 3, -q * s);  // q across the member
            b.load(1, 2, 1, -0.8 * tip), b.load(1, 2, 2, 0.6 * tip);
            const memberline line = membersof(b, b.solve(2))[0];
            const auto expect = [&](column about, double share,
                                    const std::function<double(double)>& wanted, double of) {
                const double size = std::fabs(of);
                for (int i = 0; i < memberstations; ++i)
                    EXPECT_NEAR(line(about, i), share * wanted(i / 20.0), 3e-6 * size)
                        << "column " << about << ", station " << i << ", turned by " << turned;
            };
            const auto moment = [&](double x) {
                return q * l * l * (1 - x) * (1 - x) / 2 + tip * l * (1 - x);
            };
            const auto force = [&](double x) { return q * l * (1 - x) + tip; };
            const auto bent = [&](double x) {
                const double a = x * l;
                return (q * a * a * (6 * l * l - 4 * l * a + a * a) / 24 +
                        tip * a * a * (3 * l - a) / 6) /
                           (modulus * flat) +
                       soft * (q * (l * a - a * a / 2) + tip * a);
            };
            expect(momentz, c * i3 / flat, moment, moment(0));
            expect(momenty, s * second2 / flat, moment, moment(0));
            expect(sheary, c * i3 / flat, force, force(0));
            expect(shearz, -s * second2 / flat, force, force(0));
            expect(alongy, c, bent, bent(1));
            expect(alongz, -s, bent, bent(1));
        }
}

// End loads alone, weight, a spinning bar, a bar of a truss.
TEST(Members, WeightSpinAndBars) {
    build b = clampedbeam(0);
    b.inmetres();
    b.load(1, 2, 4, 60), b.load(1, 2, 5, 80);  // a moment along the beam
    b.load(1, 2, 3, -7);
    b.addcase(caseaccz, {-9.81, 0, 0, 0, 1});
    b.addcase(caseaccrz, {3, 0, 0, 0, 1});  // tangential: force along e2 grows with x
    const results r = b.solve();
    memberline line = membersof(b, r)[0];
    expectcolumn(
        line, torsion, [](double) { return 100; }, 1e-6, "T");
    expectcolumn(
        line, shearz, [](double) { return -7; }, 1e-6, "Vz");
    expectcolumn(
        line, momenty, [](double x) { return 7 * length * (1 - x); }, 1e-6, "My");
    line = membersof(b, r, 2)[0];
    const double weight = 9.81 * 8e-9 * area;
    expectcolumn(
        line, shearz, [&](double x) { return -weight * length * (1 - x); }, 1e-6, "weight");
    line = membersof(b, r, 3)[0];
    const double spin = 3 * 8e-9 * area;
    expectcolumn(
        line, sheary, [&](double x) { return spin * length * length * (1 - x * x) / 2; }, 1e-6,
        "spin");
    expectcolumn(
        line, alongy,
        [&](double x) {
            // q = c x: EI v = c (20 L^3 x^2 - 10 L^2 x^3 + x^5) / 120, and the beam's own turning
            // mass
            const double turning = 3 * 8e-9 * i3, a = x * length, l = length;
            return (spin * (20 * l * l * l * a * a - 10 * l * l * a * a * a + std::pow(a, 5)) /
                        120 +
                    turning * (l * a * a / 2 - a * a * a / 6)) /
                   (modulus * i3);
        },
        1e-5, "v of the spin");

    build bar;
    bar.chain(typetruss, bar.bar(modulus, area), {0, 0, 0}, {length, 0, 0}, 1);
    bar.fix(1, {1, 2, 3}), bar.fix(2, {2, 3});
    bar.press(1, 1, 1, 2), bar.press(1, 1, 2, 4);
    line = membersof(bar, bar.solve())[0];
    expectcolumn(
        line, axial, [](double x) { return 2 * length * (1 - x); }, 1e-6, "N");
    expectcolumn(
        line, momentz, [](double x) { return -4 * length * length * x * (1 - x) / 2; }, 1e-6,
        "M between hinges");
    expectcolumn(
        line, alongy, [](double) { return 0; }, 0, "v");
}

// Wave and wind on one long member against the same member in forty pieces; the wind also where the
// ground hides all but a little of it.
TEST(Members, SeaAndWindAgreeWithAFineMesh) {
    const int hidden = 0;
    for (const int which : {int(casewave), int(casewind), int(casebuoyancy), hidden}) {
        const int type = which == hidden ? int(casewind) : which;
        const vec3 top = which == hidden ? vec3(6, 3, 1.6) : vec3(6, 3, 12);
        memberline whole;
        std::vector<memberline> fine;
        for (const int n : {1, 40}) {
            build b;
            b.inmetres();
            const double d = 0.9, a = 0.05, i = a * (d * d - 2 * a / M_PI) / 8;
            b.fix(b.chain(typepipe, b.bar(2e11, a, {i, i, 2 * i}, 7850), {0, 0, -20}, top, n),
                  clamped);
            b.fix(b.m.nnodes(), clamped);
            b.onlycase(type, type == casewave   ? std::initializer_list<double>{6, 9, 20, 0.1, 30}
                             : type == casewind ? std::initializer_list<double>{30, 70}
                                                : std::initializer_list<double>{2, 15, 10000});
            const std::vector<memberline> lines = membersof(b, b.solve());
            if (n == 1) whole = lines[0];
            fine = lines;
        }
        const int first[] = {axial, torsion, alongy, alongz + 1};  // forces, moments, deflections
        for (int kind = 0, k = axial; k <= alongz; ++k) {
            kind += k == first[kind + 1];
            double size = 0;
            for (const memberline& line : fine) {
                const auto alike = line.middleRows(first[kind], first[kind + 1] - first[kind]);
                size = std::max(
                    {size, line.row(k).cwiseAbs().maxCoeff(), 1e-6 * alike.cwiseAbs().maxCoeff()});
            }
            for (int i = 0; i < 20; ++i)
                EXPECT_NEAR(whole(k, i), fine[std::size_t(2 * i)](k, 0), 1e-3 * size)
                    << "case " << which << " value " << k << " station " << i;
        }
    }
}
