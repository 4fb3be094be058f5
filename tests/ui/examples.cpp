// SPDX-License-Identifier: GPL-3.0-or-later
// The example models, solved by the solver program and held against closed forms and published
// values.
#include <QProcess>
#include <array>
#include <cmath>
#include <filesystem>

#include "core/journal.h"
#include "core/units.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/contour.h"
#include "post/exactstress.h"
#include "post/members.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/source.h"
#include "post/stressfile.h"
#include "tests/support/recorder.h"
#include "tools/unitsform.h"
#include "view/scaleview.h"

namespace fs = std::filesystem;

static void runsolver(const sessionroom& room, const std::string& name, const char* option) {
    QStringList arguments = {"--model", QString::fromStdString(room.file(name)), "--appdir",
                             QString::fromStdString(room.folder)};
    if (*option) arguments << option;
    QProcess solver;
    solver.start(KALVANE_FEIFLU, arguments);
    ASSERT_TRUE(solver.waitForFinished(60000));
    ASSERT_EQ(solver.exitCode(), 0) << solver.readAllStandardError().toStdString();
}

// Opens a copy of the example, solves it and reads the displacements of a combination.
static void solve(sessionroom& room, const std::string& name, bool twod) {
    for (const auto& entry : fs::directory_iterator(sourcedir() + "/data/examples"))
        if (entry.path().stem() == name)
            fs::copy_file(entry.path(), room.file(entry.path().filename().string()));
    runsolver(room, name, twod ? "--2d" : "");
    ASSERT_TRUE(openmodel(room.file(name)));
}

// The model in hand, saved and solved.
static void solvemade(sessionroom& room, bool twod) {
    modelname = room.file("made");
    startjournal();
    ASSERT_TRUE(savemodel());
    runsolver(room, "made", twod ? "--2d" : "");
    dropmembers();
    retryresults();
}

static void readcombination(int c) {
    curlcomb = c;
    ASSERT_TRUE(readdisp());
}

// Node at a place, 0 for none.
static int nodeat(double x, double y, double z) {
    for (int n = 1; n <= nnodes(); ++n)
        if (std::fabs(nodes(0, n, 0) - x) < 0.01 && std::fabs(nodes(0, n, 1) - y) < 0.01 &&
            std::fabs(nodes(0, n, 2) - z) < 0.01)
            return n;
    return 0;
}

// As opened on a screen of 1024 x 768, in one view and in each of four.
TEST(Examples, EveryViewShowsTheWholeModel) {
    sessionroom room;
    vieww = 21.7;  // centimetres
    viewh = 15.6;
    int models = 0;
    for (const auto& entry : fs::directory_iterator(sourcedir() + "/data/examples")) {
        if (entry.path().extension() != ".tek") continue;
        ASSERT_TRUE(openmodel((entry.path().parent_path() / entry.path().stem()).string()));
        ++models;
        for (int v = 1; v <= nviews; ++v) {
            prepareview(v);
            double widest = 0;
            bool inside = true;
            for (int n = 1; n <= nnodes(); ++n) {
                setnode(n, v);
                projectpoint(v);
                const double off[] = {scrx - vieww / 2, scry - viewh / 2};
                widest = std::max({widest, std::fabs(off[0]) / vieww, std::fabs(off[1]) / viewh});
                inside = inside && std::fabs(off[0]) < vieww / 2 - 0.5 &&
                         std::fabs(off[1]) < viewh / 2 - 0.5;
            }
            EXPECT_TRUE(inside) << entry.path() << " " << v;
            // From above and along the beam no more than a point.
            const auto name = entry.path().stem();
            const bool isline = (name == "monopile" && v == 2) || (name == "cranebeam" && v == 4);
            EXPECT_TRUE(widest > 0.3 || isline) << entry.path() << " " << v << " is small";
        }
    }
    EXPECT_EQ(models, 11);
}

// Stiffness against sway of a portal with fixed feet, axial strains left out (A. K. Chopra,
// Dynamics of Structures, chapter 1): 24 E I / h^3 (6 r + 1) / (6 r + 4), r the ratio of the
// stiffnesses I / length of beam and column.
static double swaystiffness(double e, double column, double h, double beam, double width) {
    const double r = (beam / width) / (column / h);
    return 24 * e * column / (h * h * h) * (6 * r + 1) / (6 * r + 4);
}

TEST(Examples, PortalSwaysAsTheFrameFormulaTells) {
    sessionroom room;
    solve(room, "portal", true);
    readcombination(1);
    const double k = swaystiffness(210000, groups(1, 9), 5000, groups(2, 9), 8000);
    EXPECT_NEAR(nodes(1, nodeat(0, 5000, 0), 0), 40000 / k, 0.01 * 40000 / k);
    EXPECT_NEAR(nodes(1, nodeat(8000, 5000, 0), 0), 40000 / k, 0.01 * 40000 / k);
    readcombination(2);
    const int left = nodeat(8000.0 / 3, 5000, 0), right = nodeat(16000.0 / 3, 5000, 0);
    EXPECT_NEAR(nodes(1, left, 1), nodes(1, right, 1), 1e-6) << "gravity is symmetric";
    const float gravity = nodes(1, left, 1);
    readcombination(1);
    const float pushed = nodes(1, left, 1);
    readcombination(3);
    EXPECT_NEAR(nodes(1, left, 1), 1.5f * pushed + 1.35f * gravity, 1e-5);
}

// Stress concentration of a hole in a tension strip, hole 0.2 of the width: 2 + (1 - 0.2)^3 = 2.512
// times the mean stress of the net section (R. E. Peterson, Stress Concentration Factors, by
// R. B. Heywood's formula). The hoop strain at the hole is the stretch of its edge.
TEST(Examples, HoleRaisesTheStressAsPublished) {
    sessionroom room;
    solve(room, "platehole", true);
    readcombination(1);
    const double radius = 20, step = 1.5707963267948966 / 24;
    const auto strain = [&](int i) {  // of the chord from angle 90 - i steps to the next
        const auto at = [&](int k) {
            const double a = 1.5707963267948966 - k * step;
            return nodeat(std::round(radius * std::cos(a) * 1e4) / 1e4,
                          std::round(radius * std::sin(a) * 1e4) / 1e4, 0);
        };
        const int a = at(i), b = at(i + 1);
        double before = 0, after = 0;
        for (int k = 0; k < 2; ++k) {
            const double d = double(nodes(0, b, k)) - nodes(0, a, k);
            const double u = double(nodes(1, b, k)) - nodes(1, a, k);
            before += d * d;
            after += (d + u) * (d + u);
        }
        return (std::sqrt(after) - std::sqrt(before)) / std::sqrt(before);
    };
    // Chords lie half a step and one and a half from the top; the strain falls with the square.
    const double top = strain(0) + (strain(0) - strain(1)) / 8;
    const double net = 100 * 200.0 / 160.0;
    EXPECT_NEAR(210000 * top / net, 2.512, 0.05);
}

// Axial forces of a statically determinate truss from the equilibrium of its joints alone.
static std::vector<double> memberforces(const std::vector<double>& load) {
    const int free = nnodes() - 3, unknowns = nelems();
    EXPECT_EQ(3 * free, unknowns);
    const auto n = std::size_t(unknowns);
    std::vector<std::vector<double>> a(n, std::vector<double>(n + 1, 0));
    for (int e = 1; e <= nelems(); ++e) {
        const int ends[] = {int(elems(e, 1)), int(elems(e, 2))};
        double d[3], length = 0;
        for (int k = 0; k < 3; ++k) {
            d[k] = double(nodes(0, ends[1], k)) - nodes(0, ends[0], k);
            length += d[k] * d[k];
        }
        length = std::sqrt(length);
        for (int end = 0; end < 2; ++end)
            for (int k = 0; k < 3; ++k)
                if (ends[end] > 3)
                    a[std::size_t(3 * (ends[end] - 4) + k)][std::size_t(e - 1)] =
                        (end == 0 ? 1 : -1) * d[k] / length;
    }
    for (std::size_t i = 0; i < n; ++i) a[i][n] = -load[i + 9];
    for (std::size_t c = 0; c < n; ++c) {  // Gauss with pivots
        std::size_t best = c;
        for (std::size_t r = c; r < n; ++r)
            if (std::fabs(a[r][c]) > std::fabs(a[best][c])) best = r;
        std::swap(a[c], a[best]);
        for (std::size_t r = 0; r < n; ++r) {
            if (r == c || a[r][c] == 0) continue;
            const double f = a[r][c] / a[c][c];
            for (std::size_t k = c; k <= n; ++k) a[r][k] -= f * a[c][k];
        }
    }
    std::vector<double> force(n);
    for (std::size_t i = 0; i < n; ++i) force[i] = a[i][n] / a[i][i];
    return force;
}

// Displacement by the unit load theorem: the sum over members of N n L / E A.
TEST(Examples, TowerFollowsStaticsAndTheUnitLoadTheorem) {
    sessionroom room;
    solve(room, "tower", false);
    for (int lc = 1; lc <= 2; ++lc) {
        readcombination(lc);
        std::vector<double> load(std::size_t(3 * nnodes()), 0);
        for (int i = 1; i <= loadnode(lc, 0); ++i)
            load[std::size_t(3 * (loadnode(lc, i) - 1) + loaddof(lc, i) - 1)] += loadval(lc, i);
        const std::vector<double> n = memberforces(load);
        for (const int node : {6, 13, 21})
            for (int k = 0; k < 3; ++k) {
                std::vector<double> unit(load.size(), 0);
                unit[std::size_t(3 * (node - 1) + k)] = 1;
                const std::vector<double> virtualforce = memberforces(unit);
                double u = 0;
                for (int e = 1; e <= nelems(); ++e) {
                    double square = 0;
                    for (int axis = 0; axis < 3; ++axis) {
                        const double d = double(nodes(0, long(elems(e, 2)), axis)) -
                                         nodes(0, long(elems(e, 1)), axis);
                        square += d * d;
                    }
                    u += n[std::size_t(e - 1)] * virtualforce[std::size_t(e - 1)] *
                         std::sqrt(square) / (groups(egroup(e), 1) * groups(egroup(e), 4));
                }
                EXPECT_NEAR(nodes(1, node, k), u, 2e-6 * maxdisp)
                    << "node " << node << " axis " << k;
            }
    }
}

TEST(Examples, PlatformSwaysAsTwoPortalsAndSinksByItsLegs) {
    sessionroom room;
    solve(room, "platform", false);
    readcombination(1);
    const double k = 2 * swaystiffness(210000, groups(1, 9), 28000, groups(2, 9), 12000);
    const int corner = nodeat(12000, 12000, 8000);
    // The formula leaves out the strain of legs that pull and push, a little over one per cent.
    EXPECT_NEAR(nodes(1, corner, 0), 1.01 * 1e6 / k, 0.01 * 1e6 / k);
    readcombination(2);
    EXPECT_NEAR(nodes(1, corner, 2), -1.5e6 * 28000 / (210000 * groups(1, 4)), 1e-5);
}

// Work of the nodal loads of one case on the displacements of another.
static double workon(int loads, int displacements) {
    readcombination(displacements);
    double work = 0;
    for (int i = 1; i <= loadnode(loads, 0); ++i)
        work += double(loadval(loads, i)) * nodes(1, loadnode(loads, i), loaddof(loads, i) - 1);
    return work;
}

// Combination 2 weighs both cases, so that u2 = u(1) + f u(2) (E. Betti's theorem: P1 u2 = P2 u1).
TEST(Examples, TwoCasesOfTheBuiltModelsAreReciprocal) {
    for (const char* name : {"bracket", "joints"}) {
        SCOPED_TRACE(name);
        sessionroom room;
        solve(room, name, name == std::string("bracket"));
        ASSERT_EQ(nlc(), 2);
        const double f = lcomb(2, 2);
        const double own = workon(1, 1), cross = (workon(1, 2) - own) / f, back = workon(2, 1);
        EXPECT_GT(own, 0);
        EXPECT_GT(std::fabs(back), 1e-4 * own) << "the cases do not touch each other";
        EXPECT_NEAR(cross, back, 1e-5 * own);
    }
}

// The middle stiffener as a simple beam that carries its strip of the plate: 5 q L^4 / 384 E I and
// q L^2 / 8 G A of the web (S. P. Timoshenko, Strength of Materials I). Five per cent for the shear
// lag of the plate and for what the strips give each other.
TEST(Examples, PanelSagsAsItsStiffenerWithABandOfPlate) {
    sessionroom room;
    solve(room, "panel", false);
    readcombination(1);
    const double e = 210000, g = e / 2.6, length = 3000, q = 0.02 * 500;
    const double area[] = {500 * 10, 200 * 8, 1440}, depth[] = {0, 100, 200};
    const double own[] = {500 * 1000 / 12.0, 8 * 8e6 / 12, 17280};
    double sum = 0, moment = 0, inertia = 0;
    for (int i = 0; i < 3; ++i) sum += area[i], moment += area[i] * depth[i];
    for (int i = 0; i < 3; ++i) inertia += own[i] + area[i] * std::pow(depth[i] - moment / sum, 2);
    const double beam =
        5 * q * std::pow(length, 4) / (384 * e * inertia) + q * length * length / (8 * g * area[1]);
    const int middle = nodeat(1500, 1000, 0);
    ASSERT_NE(middle, 0);
    const double sag = -nodes(1, middle, 2);
    EXPECT_NEAR(sag, beam, 0.05 * beam);
    EXPECT_NEAR(nodes(1, nodeat(1500, 500, 0), 2), nodes(1, nodeat(1500, 1500, 0), 2), 1e-3 * sag);
}

// The six values of a row of NAME.sum of a load case: sums of forces and moments about the origin.
static std::array<double, 6> sumrow(const sessionroom& room, const std::string& name, int lc,
                                    const std::string& row) {
    const std::string text = contentof(room.file(name + ".sum"));
    const std::size_t begin = text.find("\"case\"," + std::to_string(lc) + ",");
    std::size_t at = text.find('"' + row + "\",", begin);
    std::array<double, 6> values{};
    EXPECT_NE(at, text.npos) << row;
    at = text.find(',', at);
    for (double& v : values) {
        v = std::strtod(text.c_str() + at + 1, nullptr);
        at = text.find(',', at + 1);
    }
    return values;
}

// At a quarter of a wave linear theory has still water and the largest acceleration, whose integral
// over the depth is closed (R. G. Dean, R. A. Dalrymple, Water Wave Mechanics, chapter 8).
TEST(Examples, MonopileCarriesWaveCurrentAndWeight) {
    sessionroom room;
    solve(room, "monopile", false);
    const double d = 25, diameter = 5, omega = 2 * M_PI / 10, height = 6;
    double k = 0.05;
    for (int i = 0; i < 100; ++i) k = omega * omega / (9.80665 * std::tanh(k * d));
    const double c = 1025 * 1.2 * M_PI / 4 * diameter * diameter * height / 2 * omega * omega;
    const double moment =
        c * (d * std::sinh(k * d) / k - (std::cosh(k * d) - 1) / (k * k)) / std::sinh(k * d);
    const auto wave = sumrow(room, "monopile", 1, "applied");
    EXPECT_NEAR(wave[0], c / k, 1e-6 * c / k);
    EXPECT_NEAR(wave[4] + wave[0] * d * 1000, moment * 1000, 1e-6 * moment * 1000);
    const double q = 3.8745, e = groups(1, 1), area = groups(1, 4), inertia = groups(1, 7);
    const double bed = d * 1000, slope = q * std::pow(bed, 3) / (6 * e * inertia);
    readcombination(1);
    const float byitself = nodes(1, 15, 0);
    readcombination(2);
    EXPECT_NEAR(nodes(1, 15, 0) - byitself,
                q * std::pow(bed, 4) / (8 * e * inertia) + 10000 * slope, 1e-5);
    EXPECT_NEAR(nodes(1, 15, 2), -7.85e-6 * 9.81 * 35000 * 35000 / (2 * e), 1e-6);
    EXPECT_NEAR(sumrow(room, "monopile", 3, "applied")[2], -7.85e-6 * 9.81 * area * 35000, 1);
}

// Wind on each member by the part of its speed that is across it, Simpson's rule along the member.
TEST(Examples, MastStandsInTheWindByStatics) {
    sessionroom room;
    solve(room, "mast", false);
    double force = 0, moment = 0;
    for (int e = 1; e <= nelems(); ++e) {
        double p[3], d[3], square = 0;
        for (int k = 0; k < 3; ++k) {
            p[k] = nodes(0, long(elems(e, 1)), k) / 1000;
            d[k] = nodes(0, long(elems(e, 2)), k) / 1000 - p[k];
            square += d[k] * d[k];
        }
        const double length = std::sqrt(square), ex = d[0] / length, ez = d[2] / length;
        const double diameter = egroup(e) == 1 ? 0.1143 : 0.0603;
        const int pieces = 200;
        for (int i = 0; i <= pieces; ++i) {
            const double weight = (i == 0 || i == pieces ? 1 : i % 2 ? 4 : 2) / (3.0 * pieces);
            const double t = double(i) / pieces, z = p[2] + t * d[2];
            const double v = 35 * std::pow(z / 10, 0.125);
            const double across = v * std::sqrt(1 - ex * ex);
            const double drag = 0.5 * 1.225 * 0.5 * diameter * across * v * length * weight;
            force += drag * (1 - ex * ex);
            moment += drag * ((1 - ex * ex) * z + ex * ez * (p[0] + t * d[0]));
        }
    }
    const auto wind = sumrow(room, "mast", 1, "applied");
    EXPECT_NEAR(wind[0], force, 1e-4 * force);
    EXPECT_NEAR(wind[4], moment * 1000, 1e-4 * moment * 1000);
    // The reactions of the feet, by moments about the line through the windward two.
    const double lean = wind[4] - sumrow(room, "mast", 2, "applied")[2] * 577.35027;
    curlcomb = 2;
    ASSERT_TRUE(readshape());
    EXPECT_NEAR(dispres(0, nodeat(1154.7005, 0, 0), 3), lean / 1732.05081, 1);
}

// Archimedes: hull and frames displace what hull, frames and cargo weigh.
TEST(Examples, PontoonFloatsByItself) {
    sessionroom room;
    solve(room, "pontoon", false);
    const double frame = groups(1, 4) * 1e-6, water = 1025 * 9.81, draught = lcpar(2, 0) / 1000;
    const double weight = (63 * 0.008 + 63 * frame) * 7850 * 9.81;
    EXPECT_NEAR(-sumrow(room, "pontoon", 1, "applied")[2], weight, 1e-5 * weight);
    const double lift = water * (18 * draught + 14 * draught * frame + 21 * frame);
    EXPECT_NEAR(sumrow(room, "pontoon", 2, "applied")[2], lift, 1e-5 * lift);
    EXPECT_NEAR(weight + 18 * 5000, lift, 1);
    std::array<double, 6> sum{};
    for (int lc = 1; lc <= 3; ++lc) {
        const auto reactions = sumrow(room, "pontoon", lc, "reactions");
        for (std::size_t k = 0; k < 6; ++k) sum[k] += reactions[k];
    }
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(sum[k], 0, 1) << k;
    for (std::size_t k = 3; k < 6; ++k) EXPECT_NEAR(sum[k], 0, 3000) << "about axis " << k - 3;
}

static void hold(int n, std::initializer_list<int> directions) {
    for (const int dof : directions) {
        connode(++ncon) = n;
        condof(ncon) = dof;
    }
}

static void loadelement(int lc, int e, int direction, float q) {
    const int i = int(++elemload(lc, 0, 0));
    elemload(lc, i, 0) = float(e);
    elemload(lc, i, 1) = float(direction);
    elemload(lc, i, 2) = q;
}

// Beam over two spans, each loaded in a case of its own (AISC, Steel Construction Manual, table of
// continuous beams): one span loaded M = 49/512 q l^2 in it, 1/16 over the support;
// both 9/128 and 1/8, reactions 3/8, 10/8, 3/8. The envelope of the three takes the worst of each.
TEST(Examples, TwoSpansHaveTheMomentsOfTheTables) {
    sessionroom room;
    const double q = 6, l = 4, unit = q * l * l;
    for (int n = 0; n <= 4; ++n) addnode(float(n * l / 2), 0, 0);
    for (int e = 1; e <= 4; ++e) addelement(typebeam, {e, e + 1});
    groups(1, fieldmodulus) = 2.1e8;
    groups(1, fieldthickness) = 0.01;
    groups(1, fieldixx) = groups(1, fieldiyy) = 1e-4;
    hold(1, {1, 2});
    hold(3, {2});
    hold(5, {2});
    loadnode(0, 0) = 2;
    lcomb(0, 0) = 3;
    for (int c = 1; c <= 3; ++c)
        for (int l2 = 1; l2 <= 2; ++l2) lcomb(c, l2) = float(c == 3 || c == l2);
    for (int e = 1; e <= 4; ++e) loadelement(e <= 2 ? 1 : 2, e, 2, float(-q));
    solvemade(room, true);
    shownsource = {sources::envelope, 1, {}, {}};
    const memberrange m = rangeof(memMz, allmembers());
    EXPECT_NEAR(m.high.value, 49 / 512.0 * unit, 1e-3 * unit);
    EXPECT_NEAR(m.low.value, -unit / 8, 1e-5 * unit);
    EXPECT_EQ(governorsof(m.low.e).low[memMz][m.low.station], 3);
    EXPECT_NE(governorsof(m.high.e).high[memMz][m.high.station], 3);
    shownsource = {};
    curlcomb = 3;
    ASSERT_TRUE(readshape());
    for (const auto& [node, share] : {std::pair{1, 0.375}, {3, 1.25}, {5, 0.375}})
        EXPECT_NEAR(dispres(0, node, 2), share * q * l, 1e-5 * q * l) << node;
    EXPECT_NEAR(rangeof(memMz, allmembers()).high.value, 9 / 128.0 * unit, 1e-3 * unit);
}

// Square plate held along its border under even pressure, Timoshenko and Woinowsky-Krieger, Theory
// of Plates and Shells, 2nd ed., table 8: w = 0.00406 q a^4 / D, M = 0.0479 q a^2 at the middle, V
// = 0.338 q a at the middle of a side.
TEST(Examples, APlateHasTheMomentsAndShearsOfTheTable) {
    sessionroom room;
    const int side = 16;
    const double a = 8, q = 2, t = 0.08, e = 2e7;
    for (int j = 0; j <= side; ++j)
        for (int i = 0; i <= side; ++i) {
            const int n = addnode(float(i * a / side), float(j * a / side), 0);
            if (i == 0 || j == 0 || i == side || j == side) hold(n, {3});
        }
    groups(1, fieldmodulus) = e;
    groups(1, fieldpoisson) = 0.3;
    groups(1, fieldthickness) = t;
    for (int j = 0; j < side; ++j)
        for (int i = 0; i < side; ++i) {
            const int n = 1 + i + j * (side + 1);
            loadelement(1, addelement(typeplate4, {n, n + 1, n + side + 2, n + side + 1}), 3,
                        float(q));
        }
    solvemade(room, false);
    readcombination(1);
    const double d = e * t * t * t / (12 * 0.91);
    EXPECT_NEAR(nodes(1, nodeat(a / 2, a / 2, 0), 2), 0.00406 * q * std::pow(a, 4) / d,
                0.01 * 0.00406 * q * std::pow(a, 4) / d);
    lineelstress = 0;
    stresslocal = true;
    ASSERT_TRUE(readstress());
    // The third corner of the element before the middle; the middle of the side x = 0.
    const int middle = side / 2 - 1 + (side / 2 - 1) * side + 1, border = side / 2 * side + 1;
    EXPECT_NEAR(std::fabs(exactvalue(momentx, middle, 3)), 0.0479 * q * a * a,
                0.02 * 0.0479 * q * a * a);
    EXPECT_NEAR(std::fabs(exactvalue(momenty, middle, 3)), 0.0479 * q * a * a,
                0.02 * 0.0479 * q * a * a);
    EXPECT_NEAR(std::fabs(exactvalue(shearx, border, 1)), 0.338 * q * a, 0.1 * 0.338 * q * a);
    stresslocal = false;
}

// Own weight, wave and current, and frequencies: what depends on units.
TEST(Examples, AnswersStayInOtherUnits) {
    sessionroom room;
    solve(room, "monopile", false);
    runsolver(room, "monopile", "--eigen");
    const auto frequency = [&] {
        textin modes(room.file("monopile.EIG"));
        modes.number(), modes.number();
        return modes.number();
    };
    const auto found = [&] {
        std::vector<double> all = {frequency()};
        for (int c = 1; c <= ncomb(); ++c) {
            readcombination(c);
            for (int k = 0; k < 3; ++k) all.push_back(nodes(1, 15, k));
        }
        return all;
    };
    const auto before = found();
    unitsform form = openunits();
    chooseunits(form, 5);
    room.platform.answerqueue = {answers::yes};
    ASSERT_TRUE(storeunits(form));
    EXPECT_EQ(unitstext, "ft kip lb");
    EXPECT_FALSE(fs::exists(room.file("monopile.rvp")));
    ASSERT_TRUE(savemodel());
    runsolver(room, "monopile", "");
    runsolver(room, "monopile", "--eigen");
    retryresults();
    const auto after = found();
    ASSERT_EQ(after.size(), before.size());
    const double foot = 304.8;
    for (std::size_t i = 0; i < after.size(); ++i)
        EXPECT_NEAR(after[i] * (i == 0 ? 1 : foot), before[i], 1e-5 * std::fabs(before[i])) << i;
}

// M = P l / 4 + q l^2 / 8, w = P l^3 / (48 E I) + 5 q l^4 / (384 E I), in metres and kilonewtons.
TEST(Examples, CraneBeamIsInMetresAndKilonewtons) {
    sessionroom room;
    solve(room, "cranebeam", false);
    EXPECT_EQ(unitstext, "m kN t");
    readcombination(1);
    const double ei = 210e6 * 4.819853e-4, l = 8;
    const double w = 54 * l * l * l / (48 * ei) + 5 * 12 * std::pow(l, 4) / (384 * ei);
    EXPECT_NEAR(nodes(1, nodeat(4, 0, 0), 2), -w, 1e-6);
    EXPECT_NEAR(sumrow(room, "cranebeam", 2, "applied")[2], -96, 1e-6);
    stressloaded = false;
    lineelstress = 1;
    ASSERT_TRUE(readstress());
    lineelstress = 0;
    const double bending = std::fabs(elemstress(8, 4, 2)), moment = 54 * l / 4 + 12 * l * l / 8;
    EXPECT_NEAR(bending, moment * 0.25 / 4.819853e-4, 0.1) << "kN/m2 in the files";
    EXPECT_NEAR(shownfactor("F/L^2") * bending, 105.81, 0.01) << "N/mm2 on show";
}
