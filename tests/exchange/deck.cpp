// SPDX-License-Identifier: GPL-3.0-or-later
// Decks: what is read, what comes back, and what the other solver makes of what is written.
#include "exchange/deck.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "exchange/shapes.h"
#include "exchange/textlines.h"
#include "tests/exchange/samples.h"

static const char* const frame = R"(*HEADING
two spans
*NODE, NSET=ALL
10, 0., 0., 0.
20, 4.D0, 0.
30, 8, 0, 0
40, 4, 0, 3
** a comment
*ELEMENT, TYPE=B31R, ELSET=BARS
1, 10, 20
2, 20, 30
*ELEMENT, TYPE=S3,
 ELSET=SKIN
3, 10, 20, 40
*NSET, NSET=ENDS
10, 30,
*NSET, NSET=BOTH, GENERATE
10, 30, 20
*MATERIAL, NAME=Steel
*ELASTIC
2.1E5, 0.3
*BEAM SECTION, ELSET=BARS, MATERIAL=STEEL, SECTION=RECT
2, 3
0, 0, 1
*SHELL SECTION, MATERIAL=STEEL, ELSET=SKIN
0.5
*BOUNDARY
ENDS, 1, 3
10, 5, 5, 0.1
*STEP
*STATIC
*CLOAD
20, 3, -7
20, 3, -1
*DLOAD
SKIN, P, 2.5
*END STEP
*STEP
*STATIC
*CLOAD
20, 3, -9
*DLOAD, OP=NEW
SKIN, GRAV, 9.81, 0, 0, -1
*END STEP
)";

TEST(Deck, NodesSetsSectionsAndStepsAreRead) {
    exchangeroom room;
    automergenodes = false;
    writefile(room.file("a.inp"), frame);
    ASSERT_EQ(room.open(room.file("a.inp")), reply::done);
    EXPECT_EQ(nnodes(), 4);
    EXPECT_EQ(nodename(2), "20");
    EXPECT_EQ(nodes(0, 2, 0), 4);
    EXPECT_EQ(countoftype(typebeam) * 10 + countoftype(typeshell3), 21);
    EXPECT_EQ(groupname(egroup(1)), "BARS");
    EXPECT_EQ(groups(egroup(1), fieldthickness), 6);
    EXPECT_NEAR(groups(egroup(1), fieldixx), 2 * 27.0 / 12, 1e-12);
    EXPECT_NEAR(groups(egroup(1), fieldiyy), 3 * 8.0 / 12, 1e-12);
    EXPECT_NEAR(groups(egroup(1), fieldrotation), 90, 1e-9) << "axis 1 looks up";
    EXPECT_EQ(groups(egroup(3), fieldthickness), 0.5);
    EXPECT_EQ(groups(egroup(3), fieldmodulus), 210000);
    EXPECT_EQ(groups(egroup(3), fielddensity), 0);
    EXPECT_EQ(ncon, 7);
    EXPECT_NEAR(conval(7), 0.1 * 180 / M_PI, 1e-5);
    ASSERT_EQ(nlc(), 3);
    EXPECT_EQ(loadval(1, 1), -8) << "rows of a step add up";
    EXPECT_EQ(elemload(1, 1, 2), 2.5f);
    EXPECT_EQ(loadval(2, 1), -9) << "a later step takes the place";
    EXPECT_EQ(elemload(2, 0, 0), 0) << "OP=NEW takes the pressure away";
    EXPECT_EQ(int(lctype(3)), int(caseaccz));
    EXPECT_NEAR(lcpar(3, accvalue), -9.81 / 1000, 1e-12) << "from millimetres";
}

// Two instances of a part of beams, one of them moved, and a plate that is turned upright.
static const char* const assembly = R"(*Heading
*Part, name=Beam
*Node
1, 0, 0, 0
2, 500, 0, 0
*Element, type=B31
1, 1, 2
*Elset, elset=All
1
*Beam Section, elset=All, material=Steel, section=RECT
20, 30
0, 0, -1
*End Part
*Part, name=Plate
*Node
1, 0, 0, 0
2, 100, 0, 0
3, 100, 100, 0
4, 0, 100, 0
*Element, type=S4R5, elset=All
1, 1, 2, 3, 4
*Nset, nset=Rim, elset=All
*Shell Section, elset=All, material=Steel
5, 5
*End Part
*Assembly, name=A
*Instance, name=B-1, part=Beam
*End Instance
*Instance, name=B-2, part=Beam
0, 1000, 0
*End Instance
*Instance, name=P-1, part=Plate
0, 0, 50
0, 0, 50, 1, 0, 50, 90
*End Instance
*Nset, nset=Fix, instance=B-1
1
*Nset, nset=Fix, instance=B-2
1
*Elset, elset=Press, instance=P-1
All
*Surface, name=Top
Press, SPOS
*End Assembly
*Material, name=Steel
*Elastic
210000, 0.3
*Boundary
Fix, ENCASTRE
P-1.Rim, 1
*Step, name=Modes
*Frequency
5
*End Step
*Step, name=Lift
*Static
*Cload
B-2.2, 3, -7
*Dsload
Top, P, 0.25
*End Step
)";

TEST(Deck, InstancesOfPartsStandWhereTheAssemblyPutsThem) {
    exchangeroom room;
    automergenodes = false;
    writefile(room.file("a.inp"), assembly);
    ASSERT_EQ(room.open(room.file("a.inp")), reply::done);
    EXPECT_EQ(lastreport().count(reportkinds::error), 0) << lastreport().text();
    EXPECT_EQ(nnodes() * 100 + countoftype(typebeam) * 10 + countoftype(typeshell4), 821);
    const int end = nodeat(500, 1000, 0), corner = nodeat(100, 0, 150);
    ASSERT_TRUE(end > 0 && corner > 0) << "moved, and turned about an axis of its own";
    EXPECT_EQ(nodename(end) + " " + nodename(corner), "B-2.2 P-1.3");
    EXPECT_EQ(groupname(egroup(1)) + ", " + groupname(egroup(3)), "Beam All, Plate All");
    EXPECT_EQ(groups(egroup(3), fieldthickness), 5);
    EXPECT_EQ(ncon, 2 * 6 + 4) << "of the nodes of an element set too";
    ASSERT_EQ(nlc(), 1) << "modes are no load case";
    EXPECT_EQ(lcname(1), "Lift");
    EXPECT_EQ(loadnode(1, 1), end);
    EXPECT_EQ(elemload(1, 1, 2), -0.25f) << "a pressure pushes against the face";
}

TEST(Deck, FaultsAreToldWithTheirLine) {
    const std::string nodes = "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n";
    const struct {
        std::string text;
        int elements;  // -1: refused
        const char* told;
    } cases[] = {
        {nodes + "*ELEMENT,TYPE=S3\n1,1,2,9\n2,1,2,3\n", 1,
         "Element 1 uses node 9, which is not defined (line 6)"},
        {nodes + "*ELEMENT,TYPE=S3\n1,1,2\n", 0, "Element 1 has too few nodes"},
        {nodes + "*ELEMENT,TYPE=C3D4\n1,1,2,3,3\n", -1, "Elements of type C3D4"},
        {">**\n" + nodes +
             "*ELEMENT,TYPE=S3\n1,1,2,3\n*SHELL SECTION,ELSET=NO,COMPOSITE\n0.5,,M\n0.25\n",
         1, "Sections of layers became one layer of the first one's material (line 8)"},
        {nodes + "*ELEMENT,TYPE=S3\n1,1,2,3\n*SHELL SECTION,ELSET=NO\n1\n", 1,
         "names the set \"NO\""},
        {nodes + "*ELEMENT,TYPE=S3\n1,1,2,3\n*BOUNDARY\nNO,1\n", 1, "Set \"NO\" is not defined"},
        {nodes + "*ELEMENT,TYPE=S3\n1,1,2,3\n*TIE,NAME=A\nx,y\n*TIE\n", 1,
         "*TIE: 2 (first in line 7)"},
        {"*NODE\n1,0,zero,0\n", -1, "line 2: a coordinate was expected, found \"zero\""},
        {"*INCLUDE,INPUT=../b.inp\n", -1, "is not beneath the folder of the file"},
        {"*INCLUDE,INPUT=/etc/passwd\n", -1, "is not beneath the folder of the file"},
        {"*INCLUDE,INPUT=a.inp\n", -1, "the files to include never end"},
        {"*INCLUDE,INPUT=sub/nodes.inc\n*ELEMENT,TYPE=S3\n1,1,2,3\n", 1, "SHELL3 elements"},
    };
    for (const auto& c : cases) {
        exchangeroom room;
        std::filesystem::create_directory(room.file("sub"));
        writefile(room.file("sub/nodes.inc"), nodes);
        writefile(room.file("a.inp"), c.text);
        EXPECT_EQ(room.open(room.file("a.inp")), c.elements < 0 ? reply::failed : reply::done)
            << c.text;
        EXPECT_EQ(nelems(), std::max(c.elements, 0)) << c.text;
        EXPECT_TRUE(room.platform.toldpart(c.told) ||
                    lastreport().text().find(c.told) != std::string::npos)
            << c.text << lastreport().text();
    }
}

// Closed forms: a rectangle's torsion by the series (Timoshenko and Goodier, Theory of Elasticity,
// 3rd ed., 109), a thin square box by hand.
TEST(Deck, ShapesHaveTheirValues) {
    EXPECT_NEAR(rectangle(1, 1).torsion, 0.1406, 1e-3);
    EXPECT_NEAR(rectangle(2, 1).torsion, 0.229 * 2, 1e-3);
    EXPECT_NEAR(tube(10, 10).i1, M_PI * 1e4 / 4, 1e-9);
    EXPECT_NEAR(ellipticbar(2, 4).i1, M_PI / 4 * 8, 1e-12);
    const shapevalues box = hollowbox(10, 20, {1, 1, 1, 1});
    EXPECT_NEAR(box.area, 200 - 8 * 18, 1e-12);
    EXPECT_NEAR(box.i1, (10 * 8000.0 - 8 * 5832.0) / 12, 1e-9);
    EXPECT_NEAR(box.torsion, 4 * 81 * 361.0 / (2 * 9 + 2 * 19), 1e-9);
    const shapevalues i = flanged({200, 5.6, {100, 100}, {8.5, 8.5}, 0});
    EXPECT_NEAR(i.area, 2 * 850 + 183 * 5.6, 1e-9);
    EXPECT_NEAR(i.i1, (100 * 8e6 - 94.4 * std::pow(183, 3)) / 12, 1e-6);
    EXPECT_NEAR(i.i2, (2 * 8.5 * 1e6 + 183 * std::pow(5.6, 3)) / 12, 1e-6);
    EXPECT_NEAR(i.torsion, (200 * std::pow(8.5, 3) + 183 * std::pow(5.6, 3)) / 3, 1e-6);
    const shapevalues u = flanged({200, 5, {60, 60}, {10, 10}, -1});
    const double middle = (2 * 600 * 30 + 180 * 5 * 2.5) / 2100;  // from the back of the web
    EXPECT_NEAR(u.i2,
                2 * (10 * 216e3 / 12 + 600 * std::pow(30 - middle, 2)) + 180 * 125 / 12.0 +
                    900 * std::pow(middle - 2.5, 2),
                1e-6);
}

// --- the other solver ---------------------------------------------------------------------------

// Rows "node value value value" behind each heading that holds the words, a list a step.
static std::vector<std::vector<std::array<double, 4>>> tables(const std::string& dat,
                                                              const std::string& words) {
    std::vector<std::vector<std::array<double, 4>>> found;
    textlines in(dat, "dat");
    std::string_view line, word;
    bool taking = false;
    while (in.next(line)) {
        if (line.find("for set") != line.npos || line.find("total") != line.npos) {
            taking = line.find(words) != line.npos;
            if (taking) found.emplace_back();
            continue;
        }
        std::array<double, 4> row{};
        bool whole = taking && !line.empty();
        for (double& v : row) whole = whole && nextword(line, word) && readreal(word, v);
        if (whole) found.back().push_back(row);
    }
    return found;
}

static double displacement(const std::vector<std::array<double, 4>>& rows, int n, int k) {
    for (const auto& row : rows)
        if (int(row[0]) == n) return row[std::size_t(k)];
    ADD_FAILURE() << "no row of node " << n;
    return 0;
}

static bool hasothersolver() {
    return std::system("which ccx >/dev/null 2>&1") == 0;
}

static void hold(int n, std::initializer_list<int> dofs) {
    for (const int dof : dofs) {
        ++ncon;
        connode(ncon) = n;
        condof(ncon) = dof;
    }
}

static void pushnode(int lc, int n, int dof, float value) {
    const int i = ++loadnode(lc, 0);
    loadnode(lc, i) = n;
    loaddof(lc, i) = dof;
    loadval(lc, i) = value;
}

// A portal clamped at its feet, one element a member, pushed at a corner: Kleinlogel,
// Rahmenformeln, frame 1, with the beam's stiffness k = (I / l) h / I of a column. In space also an
// elbow of two arms, pushed across its plane: both bend and the first twists.
TEST(Deck, FramesOfTheOtherSolverStandAsHandbooksSay) {
    if (!hasothersolver()) GTEST_SKIP() << "calculix-ccx is not installed";
    const float modulus = 210000, area = 2400, i1 = 720000, i2 = 320000, torsion = 500000;
    const double h = 3000, l = 5000, arm = 2000, push = 100, part = 0.005;
    for (const bool isflat : {true, false}) {
        exchangeroom room;
        dim2d = isflat;
        groups(1, fieldmodulus) = modulus;
        groups(1, fieldpoisson) = 0.3f;
        groups(1, fieldthickness) = area;
        groups(1, fieldixx) = i1;
        groups(1, fieldiyy) = i2;
        groups(1, fieldizz) = torsion;
        const auto place = [&](double x, double up) {
            return addnode(float(x), isflat ? float(up) : 0, isflat ? 0 : float(up));
        };
        for (const double x : {0.0, l})
            for (const double up : {0.0, h}) place(x, up);
        addelement(typebeam, {1, 2});
        addelement(typebeam, {2, 4});
        addelement(typebeam, {3, 4});
        for (const int n : {1, 3}) isflat ? hold(n, {1, 2, 6}) : hold(n, {1, 2, 3, 4, 5, 6});
        pushnode(1, 2, 1, float(push));
        if (isflat) {  // a strip that goes round with the clock, pulled
            groups(0, 0) = 2;
            groups(2, fieldmodulus) = modulus;
            groups(2, fieldthickness) = 10;
            for (const double x : {9000.0, 9400.0})
                for (const double up : {x, 18400 - x}) place(x, up);
            addelement(typememb4, {5, 6, 7, 8}, 2);
            hold(5, {1, 2});
            hold(6, {1});
            for (const int n : {7, 8}) pushnode(1, n, 1, 5000);
        } else {
            for (const double x : {0.0, 0.0, arm}) place(9000 + x, nnodes() > 4 ? arm : 0);
            addelement(typebeam, {5, 6});
            addelement(typebeam, {6, 7});
            hold(5, {1, 2, 3, 4, 5, 6});
            pushnode(1, 7, 2, float(push));
        }
        importreport report;
        writedeck(room.file("d.inp"), report);
        ASSERT_EQ(std::system(("cd " + room.folder + " && ccx -i d >ccx.log 2>&1").c_str()), 0);
        const std::string dat = contentof(room.file("d.dat"));
        const auto u = tables(dat, "displacements").at(0), r = tables(dat, "forces (fx").at(0);
        const double bending = isflat ? i2 : i1, k = h / l;
        const double sway = push * h * h * h / (12 * modulus * bending) * (3 * k + 2) / (6 * k + 1);
        EXPECT_NEAR(displacement(u, 2, 1), sway, part * sway) << isflat;
        const double lift = 3 * push * h * k / (l * (6 * k + 1));
        EXPECT_NEAR(displacement(r, 1, isflat ? 2 : 3), -lift, part * lift) << isflat;
        EXPECT_NEAR(displacement(r, 1, 1), -push / 2, part * push) << isflat;
        const double pulled = 10000 / (modulus * 10);  // a square: side and height cancel
        if (isflat) {
            EXPECT_NEAR(displacement(u, 7, 1), pulled, part * pulled);
            continue;
        }
        const double cube = push * arm * arm * arm, shear = modulus / 2.6;
        const double across = 2 * cube / (3 * modulus * i2) + cube / (shear * torsion);
        EXPECT_NEAR(displacement(u, 7, 2), across, part * across);
        EXPECT_NEAR(displacement(r, 5, 2), -push, part * push);
        EXPECT_NEAR(displacement(r, 5, 3), 0, part * push);
        // And it comes back as it was, without the feet.
        ASSERT_EQ(room.open(room.file("d.inp")), reply::done);
        EXPECT_EQ(nelems() * 10 + nnodes(), 57);
        EXPECT_NE(reported(reportkinds::skipped, "Feet of clamped ends"), nullptr);
        EXPECT_EQ(ngroups(), 1) << "one for all directions";
        const int g = egroup(5);
        EXPECT_NEAR(groups(g, fieldizz) * groups(g, fieldmodulus) / (1 + groups(g, fieldpoisson)),
                    torsion * modulus / 1.3, 1e-4 * torsion * modulus);
    }
}

// A section that is thinner than any solid: its bending holds, and its torsion is told.
TEST(Deck, TorsionOutOfReachIsTold) {
    exchangeroom room;
    const float ipe200[] = {2850, 19430000, 1424000, 69800};
    groups(1, fieldmodulus) = 210000;
    groups(1, fieldthickness) = ipe200[0];
    groups(1, fieldixx) = ipe200[1];
    groups(1, fieldiyy) = ipe200[2];
    groups(1, fieldizz) = ipe200[3];
    addnode(0, 0, 0);
    addnode(5000, 0, 0);
    addelement(typebeam, {1, 2});
    importreport report;
    writedeck(room.file("d.inp"), report);
    EXPECT_NE(report.text().find("times as stiff in torsion"), std::string::npos) << report.text();
}

// A cantilever of membranes, two rows deep: bending and shear of a slender beam.
TEST(Deck, MembranesBendInTheirPlaneInTheOtherSolverToo) {
    exchangeroom room;
    const int columns = 20;
    const double side = 10, length = side * columns, depth = 2 * side, wall = 3;
    groups(1, fieldthickness) = wall;
    for (int i = 0; i <= columns; ++i)
        for (int j = 0; j <= 2; ++j) addnode(float(side * i), float(side * j), 0);
    for (int i = 0; i < columns; ++i)
        for (int j = 1; j <= 2; ++j)
            addelement(typememb4, {3 * i + j, 3 * i + j + 3, 3 * i + j + 4, 3 * i + j + 1});
    for (const int n : {1, 2, 3}) hold(n, {1, 2, 6});
    const int tip = nnodes() - 1;
    pushnode(1, tip, 2, 100);
    importreport report;
    writedeck(room.file("d.inp"), report);
    ASSERT_EQ(room.open(room.file("d.inp")), reply::done);
    EXPECT_EQ(countoftype(typememb4) * 10 + ncon, 2 * columns * 10 + 6)
        << "membranes again, and nothing of what held the shells";
    if (!hasothersolver()) GTEST_SKIP() << "calculix-ccx is not installed";
    ASSERT_EQ(std::system(("cd " + room.folder + " && ccx -i d >ccx.log 2>&1").c_str()), 0);
    const auto u = tables(contentof(room.file("d.dat")), "displacements");
    ASSERT_EQ(u.size(), 1u);
    const double inertia = wall * std::pow(depth, 3) / 12, modulus = 210000;
    const double sag = 100 * (std::pow(length, 3) / 3 / modulus / inertia +
                              1.2 * length * 2.6 / modulus / (wall * depth));
    EXPECT_NEAR(displacement(u[0], tip, 2), sag, 0.01 * sag);
}

// A cantilever of twenty beams under two loads and its weight, beside a strip of membranes that is
// pulled and a plate, simply supported, under pressure: Timoshenko and Woinowsky-Krieger, Theory of
// Plates and Shells, 2nd ed., table 8.
TEST(Deck, TheOtherSolverFindsWhatTheHandbooksSay) {
    if (!hasothersolver()) GTEST_SKIP() << "calculix-ccx is not installed";
    exchangeroom room;
    const double modulus = 210000, length = 2000, area = 2400, i1 = 720000, i2 = 320000;
    groups(0, 0) = 4;
    for (int g = 1; g <= 4; ++g) {
        groupname(g) = g == 1 ? "Beam 40x60" : g == 2 ? "Strip" : g == 3 ? "Plate" : "Pipe";
        groups(g, fieldmodulus) = modulus;
        groups(g, fieldpoisson) = 0.3;
        groups(g, fielddensity) = 7.85e-6;
        groups(g, fieldthickness) = g == 1 ? area : 10;
    }
    groups(1, fieldixx) = i1;
    groups(1, fieldiyy) = i2;
    const int beams = 20;
    for (int i = 0; i <= beams; ++i) addnode(float(length * i / beams), 0, 0);
    for (int i = 1; i <= beams; ++i) addelement(typebeam, {i, i + 1}, 1);
    hold(1, {1, 2, 3, 4, 5, 6});
    const int tip = beams + 1;
    const int strip = nnodes();
    for (int i = 0; i <= 4; ++i)
        for (int j = 0; j <= 1; ++j) addnode(float(100 * i), 5000 + float(100 * j), 0);
    for (int i = 0; i < 4; ++i)
        addelement(typememb4,
                   {strip + 2 * i + 1, strip + 2 * i + 3, strip + 2 * i + 4, strip + 2 * i + 2}, 2);
    for (int n = strip + 1; n <= nnodes(); ++n) hold(n, {3});
    hold(strip + 1, {1, 2});
    hold(strip + 2, {1});
    const int plate = nnodes(), side = 20;
    for (int i = 0; i <= side; ++i)
        for (int j = 0; j <= side; ++j) addnode(float(50 * i), -3000 + float(50 * j), 0);
    const auto at = [&](int i, int j) { return plate + i * (side + 1) + j + 1; };
    const int firstshell = nelems() + 1;
    for (int i = 0; i < side; ++i)
        for (int j = 0; j < side; ++j)
            addelement(typeshell4, {at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)}, 3);
    for (int i = 0; i <= side; ++i)
        for (int j = 0; j <= side; ++j)
            if (i == 0 || j == 0 || i == side || j == side) hold(at(i, j), {3});
    hold(at(0, 0), {1, 2});
    hold(at(side, 0), {2});
    const shapevalues pipe = tube(50, 5);
    groups(4, fieldthickness) = pipe.area;
    groups(4, fieldixx) = groups(4, fieldiyy) = pipe.i1;
    const int pipes = nnodes();
    for (int i = 0; i <= beams; ++i) addnode(0, -6000, float(length * i / beams));
    const int lastshell = nelems();
    for (int i = 1; i <= beams; ++i) addelement(typepipe, {pipes + i, pipes + i + 1}, 4);
    hold(pipes + 1, {1, 2, 3, 4, 5, 6});
    pushnode(1, pipes + beams + 1, 1, 100);
    pushnode(1, tip, 2, -100);
    pushnode(1, tip, 3, -100);
    pushnode(1, strip + 9, 1, 5000);
    pushnode(1, strip + 10, 1, 5000);
    elemload(1, 0, 0) = float(lastshell - firstshell + 1);
    for (int e = firstshell; e <= lastshell; ++e) {
        elemload(1, e - firstshell + 1, 0) = float(e);
        elemload(1, e - firstshell + 1, 1) = 3;
        elemload(1, e - firstshell + 1, 2) = -0.01f;
    }
    loadnode(0, 0) = 2;
    lcname(2) = "Weight";
    lctype(2) = caseaccz;
    lcpar(2, accvalue) = -9.81;
    lcpar(2, accelementmass) = 1;
    importreport report;
    writedeck(room.file("d.inp"), report);
    ASSERT_EQ(std::system(("cd " + room.folder + " && ccx -i d >ccx.log 2>&1").c_str()), 0)
        << contentof(room.file("ccx.log"));
    const std::string dat = contentof(room.file("d.dat"));
    const auto u = tables(dat, "displacements");
    const auto rf = tables(dat, "forces (fx,fy,fz)");
    ASSERT_EQ(u.size(), 2u) << contentof(room.file("ccx.log"));
    const double cube = 100 * length * length * length / 3 / modulus, part = 0.01;
    EXPECT_NEAR(displacement(u[0], tip, 2), -cube / i2, part * cube / i2) << "I yy bends in e2";
    EXPECT_NEAR(displacement(u[0], tip, 3), -cube / i1, part * cube / i1);
    EXPECT_NEAR(displacement(u[0], strip + 9, 1), 10000.0 * 400 / (modulus * 1000),
                part * 10000.0 * 400 / (modulus * 1000));
    EXPECT_NEAR(displacement(u[0], pipes + beams + 1, 1), cube / pipe.i1, part * cube / pipe.i1);
    const double stiffness = modulus * 1000 / 12 / (1 - 0.09);
    const double middle = 0.00406 * 0.01 * std::pow(1000.0, 4) / stiffness;
    EXPECT_NEAR(displacement(u[0], at(side / 2, side / 2), 3), -middle, part * middle);
    const double weight = 7.85e-6 * area * 9.81;
    const double sag = weight * std::pow(length, 4) / 8 / modulus / i1;
    EXPECT_NEAR(displacement(u[1], tip, 3), -sag, part * sag);
    EXPECT_NEAR(displacement(rf[1], 1, 3), weight * length, part * weight * length);
    EXPECT_NEAR(displacement(u[1], tip, 2), 0, part * sag) << "no load of the step before";
    // And it is read back as it was.
    ASSERT_EQ(room.open(room.file("d.inp")), reply::done);
    EXPECT_EQ(countoftype(typebeam), 2 * beams);
    EXPECT_EQ(nelems(), 2 * beams + 4 + side * side);
    EXPECT_NEAR(groups(egroup(1), fieldmodulus) * groups(egroup(1), fieldiyy), modulus * i2,
                1e-6 * modulus * i2);
}
