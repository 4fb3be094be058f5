// SPDX-License-Identifier: GPL-3.0-or-later
// The walk that makes the local axes of neighbours agree.
#include "tools/checkmodel.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <random>

#include "core/catalogue.h"
#include "core/newmodel.h"
#include "core/views.h"
#include "tests/support/recorder.h"
#include "tools/checkform.h"
#include "view/localaxes.h"

namespace {

const double quarter = std::acos(0.0);

// A model of shells; the walk's text comes from the dialog's forms elsewhere.
struct shellroom : sessionroom {
    static int plate(const std::vector<int>& corners, int group = 1) {
        const int type = findtype(corners.size() == 3 ? "SHELL3" : "SHELL4");
        const int e = addelement(type, corners, group);
        elemvis(activeview, e) = true;
        return e;
    }
    static std::vector<int> corners(int e) {
        std::vector<int> list;
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) list.push_back(int(elems(e, k)));
        return list;
    }
    static void load(int e, int direction, float value) {
        const int i = int(elemload(1, 0, 0)) + 1;
        const float row[] = {float(e), float(direction), value};
        for (int k = 0; k < 3; ++k) elemload(1, i, k) = row[k];
        elemload(1, 0, 0) = float(i);
    }
};

// The load on an element in model axes.
point3 loadon(int e) {
    const elementaxes axes = axesofelement(e);
    point3 sum{};
    for (int i = 1; i <= int(elemload(1, 0, 0)); ++i)
        if (int(elemload(1, i, 0)) == e)
            sum = sum + double(elemload(1, i, 2)) * axes[std::size_t(elemload(1, i, 1)) - 1];
    return sum;
}

// A closed surface of n by m quadrilaterals that meet themselves in both directions, or between two
// poles; some are divided into triangles, all begin anywhere and are turned over at random.
using surfacepoint = std::function<point3(double u, double v)>;  // u, v in 0..1
void addclosed(int n, int m, bool poles, const surfacepoint& at, std::mt19937& random) {
    std::map<std::pair<int, int>, int> number;
    const auto node = [&](int i, int j) {
        i %= n;
        if (poles && (j == 0 || j == m)) i = 0;
        if (!poles) j %= m;
        int& found = number[{i, j}];
        if (found == 0) {
            const point3 x = at(double(i) / n, double(j) / m);
            found = addnode(float(x[0]), float(x[1]), float(x[2]));
        }
        return found;
    };
    const auto add = [&](std::vector<int> c) {
        std::rotate(c.begin(), c.begin() + long(random() % c.size()), c.end());
        if (random() % 2 == 0) std::ranges::reverse(c);
        shellroom::plate(c);
    };
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < m; ++j) {
            const int a = node(i, j), b = node(i + 1, j), c = node(i + 1, j + 1),
                      d = node(i, j + 1);
            if (a == b)
                add({a, c, d});
            else if (c == d)
                add({a, b, c});
            else if (random() % 3 == 0)
                add({a, b, c}), add({a, c, d});
            else
                add({a, b, c, d});
        }
}

// Edges that two elements run along in the same direction.
int disagreements() {
    std::map<std::pair<int, int>, int> runs;
    int wrong = 0;
    for (int e = 1; e <= nelems(); ++e) {
        const auto c = shellroom::corners(e);
        for (std::size_t k = 0; k < c.size(); ++k) wrong += runs[{c[k], c[(k + 1) % c.size()]}]++;
    }
    return wrong;
}

}  // namespace

TEST(Checkmodel, NormalsOfClosedSurfacesAgreeAndLoadsStay) {
    const unsigned seed = randomseed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto turn = [](double u) { return 4 * quarter * u; };
    const auto bump = [&] { return 1 + double(random() % 100) / 500; };
    const struct {
        const char* name;
        bool poles;
        surfacepoint at;
    } bodies[] = {
        {"sphere", true,
         [&](double u, double v) {
             const double s = std::sin(turn(v) / 2);
             return point3{s * std::cos(turn(u)), s * std::sin(turn(u)), std::cos(turn(v) / 2)};
         }},
        {"rough sphere", true,
         [&](double u, double v) {
             const double s = std::sin(turn(v) / 2), r = bump();
             return point3{r * s * std::cos(turn(u)), r * s * std::sin(turn(u)),
                           r * std::cos(turn(v) / 2)};
         }},
        {"torus", false,
         [&](double u, double v) {
             const double r = 3 + std::cos(turn(v));
             return point3{r * std::cos(turn(u)), r * std::sin(turn(u)), std::sin(turn(v))};
         }},
        {"sharp ring", false,
         [&](double u, double v) {
             const double r = 3 + 2 * std::fabs(2 * v - 1), z = std::sin(turn(v)) / 10;
             return point3{r * std::cos(turn(u)), r * std::sin(turn(u)), z};
         }},
    };
    for (const auto& body : bodies) {
        SCOPED_TRACE(body.name);
        shellroom room;
        addclosed(12, 8, body.poles, body.at, random);
        std::vector<point3> before;
        const int loaded = 40;
        for (int e = 1; e <= loaded; ++e) {
            room.load(e, e % 3 + 1, float(e));
            before.push_back(loadon(e));
        }
        ASSERT_GT(disagreements(), 10);
        const walkresult result = homogenize(1, {});
        EXPECT_EQ(result.elements, nelems());
        EXPECT_EQ(disagreements(), 0);
        EXPECT_GT(result.rows, 0);
        for (int e = 1; e <= loaded; ++e)
            EXPECT_LT(lengthof(loadon(e) - before[std::size_t(e) - 1]), 1e-4 * e) << e;
        EXPECT_EQ(homogenize(1, {}).mirrored, 0);
    }
}

// A box of six faces, each of its own mesh of squares that lean any way: the axes of a face agree,
// and all normals point to one side.
TEST(Checkmodel, AxesAgreeOverTheFacesOfABox) {
    shellroom room;
    std::mt19937 random(randomseed());
    const int n = 4;
    std::map<std::array<int, 3>, int> number;
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (const int side : {0, n})
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) {
                    std::vector<int> c;
                    for (const auto& [u, v] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
                        std::array<int, 3> at{};
                        at[axis] = side;
                        at[(axis + 1) % 3] = i + u;
                        at[(axis + 2) % 3] = j + v;
                        int& node = number[at];
                        if (node == 0) node = addnode(float(at[0]), float(at[1]), float(at[2]));
                        c.push_back(node);
                    }
                    std::rotate(c.begin(), c.begin() + long(random() % 4), c.end());
                    if (random() % 2 == 0) std::ranges::reverse(c);
                    room.plate(c);
                }
    ASSERT_LT(localcheckbck().lowest, 0.5);
    homogenize(1, {axisstarts::asfound, 5});
    EXPECT_EQ(disagreements(), 0);
    const int face = n * n;
    axesonly = True;
    for (int e = 1; e <= nelems(); ++e) {
        const int first = (e - 1) / face * face + 1;
        drawlocalaxes(first, 1);
        const point3 x{localx[0], localx[1], localx[2]};
        drawlocalaxes(e, 1);
        EXPECT_NEAR(dot(x, {localx[0], localx[1], localx[2]}), 1, 1e-6) << e;
    }
    axesonly = False;
}

TEST(Checkmodel, LocalcheckTurnsTheSecondOfTwo) {
    const double angle = 0.1;  // of the fold that is one, radians
    const struct {
        const char* name;
        double lift;  // of the second's far edge
        std::vector<int> second;
        bool mirrored;
        double rotation;
    } cases[] = {
        {"as it should be", 0, {2, 5, 6, 3}, false, 0},
        {"normals opposite", 0, {3, 6, 5, 2}, true, 0},
        {"a quarter on", 0, {5, 6, 3, 2}, false, -quarter},
        {"a quarter back", 0, {3, 2, 5, 6}, false, quarter},
        {"half a turn", 0, {6, 3, 2, 5}, false, 2 * quarter},
        {"folded, agreeing", std::tan(angle), {2, 5, 6, 3}, false, 0},
        {"folded, opposite", std::tan(angle), {3, 6, 5, 2}, true, 0},
        {"a fold that counts as flat", 0.001, {3, 6, 5, 2}, true, 0},
        {"folded by more than the limit", 2, {6, 3, 2, 5}, false, 0.3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        shellroom room;
        for (const auto& [x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            addnode(float(x), float(y), 0);
        addnode(2, 0, float(c.lift));
        addnode(2, 1, float(c.lift));
        room.plate({1, 2, 3, 4});
        room.plate(c.second);
        rotpo(2) = 0.3;
        startwalk({});
        localcheck(1, 2);
        const bool isreversed = room.corners(2) != c.second;
        EXPECT_EQ(isreversed, c.mirrored);
        EXPECT_NEAR(rotpo(2), c.rotation, 1e-6);
        EXPECT_GT(dot(refz, axesofelement(2)[2]), 0);
        EXPECT_EQ(disagreements(), 0);
    }
}

TEST(Checkmodel, OrderByHand) {
    shellroom room;
    for (const auto& [x, y] : {std::pair(0, 0), {3, 0}, {2, 1}, {0, 1}})
        addnode(float(x), float(y), 0);
    room.plate({1, 2, 3, 4});
    room.plate({1, 2, 3});
    room.load(1, 3, 5);
    const point3 pressure = loadon(1);
    rotpo(1) = 0.5;
    EXPECT_EQ(flip(1).rows, 1);
    EXPECT_EQ(room.corners(1), (std::vector<int>{2, 1, 4, 3}));
    EXPECT_EQ(rotpo(1), -0.5);
    EXPECT_EQ(loadon(1), pressure);
    rotateaxis(1, true);
    EXPECT_EQ(room.corners(1), (std::vector<int>{3, 2, 1, 4}));
    mirroraxis(1);
    EXPECT_EQ(room.corners(1), (std::vector<int>{4, 1, 2, 3}));
    const auto triangle = room.corners(2);
    for (int i = 0; i < 3; ++i) rotateaxis(2, false);
    EXPECT_EQ(room.corners(2), triangle);
    setrefaxis(1, 0);
    EXPECT_GT(axesofelement(1)[2][2], 0);
    EXPECT_LT(lengthof(loadon(1) - pressure), 1e-5);
}

// A deck that a web stands on, and a second deck that meets the first in one node.
TEST(Checkmodel, GoesStraightOnWhereThreePlatesMeet) {
    shellroom room;
    for (const auto& [x, y, z] : {std::array{0, 0, 0},
                                  {1, 0, 0},
                                  {1, 1, 0},
                                  {0, 1, 0},
                                  {2, 0, 0},
                                  {2, 1, 0},
                                  {1, 0, -1},
                                  {1, 1, -1},
                                  {3, 1, 0},
                                  {3, 2, 0},
                                  {2, 2, 0}})
        addnode(float(x), float(y), float(z));
    room.plate({1, 2, 3, 4});
    room.plate({2, 7, 8, 3});  // the web comes first in number
    room.plate({2, 3, 6, 5});
    room.plate({6, 11, 10, 9});
    room.plate({2, 3, 6, 5}, 7);  // in no group
    const auto other = room.corners(5);
    const walkresult result = browsgroup(1);
    EXPECT_EQ(result.elements, 4);
    for (const int e : {1, 3, 4}) EXPECT_GT(axesofelement(e)[2][2], 0.9) << e;
    EXPECT_EQ(room.corners(5), other);
    EXPECT_EQ(maxadj, 3);
}

TEST(Checkmodel, WrongElementsAreFoundAndChanged) {
    shellroom room;
    for (int j = 0; j <= 3; ++j)
        for (int i = 0; i <= 3; ++i) addnode(float(i), float(j), 0);
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i < 3; ++i) {
            const int a = 4 * j + i + 1;
            room.plate({a, a + 1, a + 5, a + 4});
        }
    EXPECT_TRUE(findwrongelem(2.9).empty());
    mirroraxis(5);
    const axisquality quality = localcheckbck();
    EXPECT_NEAR(quality.lowest, 0, 1e-9);  // at the node whose first plate is the mirrored one
    EXPECT_NEAR(quality.highest, 3, 1e-9);
    EXPECT_TRUE(findwrongelem(1).empty());
    const auto mirrored = room.corners(5);
    const struct {
        bool rotate, three;
        std::vector<int> corners;
    } rounds[] = {
        {true, false, {mirrored[1], mirrored[2], mirrored[3], mirrored[0]}},
        {false, true, mirrored},
        {false, false, {6, 7, 11, 10}},
    };
    for (const auto& round : rounds) {
        EXPECT_EQ(findwrongelem(2.5), std::vector<int>{5});
        bool rotate = round.rotate, three = round.three;
        modifyaxis(2.5, rotate, three);
        EXPECT_EQ(room.corners(5), round.corners);
        EXPECT_EQ(std::pair(rotate, three), std::pair(!round.rotate, !round.three));
    }
    EXPECT_TRUE(findwrongelem(2.5).empty());
}

TEST(Checkmodel, DamagedModelsAreWalked) {
    shellroom room;
    EXPECT_EQ(browse({}).elements, 0);
    EXPECT_EQ(browsgroup(1).elements, 0);
    for (int i = 0; i < 6; ++i) addnode(float(i / 2), float(i % 2), 0);
    nodes(0, 6, 0) = std::nanf("");
    room.plate({1, 2, 4, 3});
    room.plate({3, 4, 6, 5});
    room.plate({3, 4, 99, 5});
    room.plate({3, 3, 3, 3});
    room.plate({3, 4, 6, 5}, 0);
    addelement(0, {1, 2});
    EXPECT_EQ(browse({axisstarts::element, 99}).elements, 3);
    EXPECT_TRUE(findwrongelem(std::nan("")).empty());
    elemload(1, 0, 0) = float(modelsize(sizeconditions));
    nodes(0, 6, 0) = 2;
    nodes(0, 6, 1) = 3;
    for (int i = 1; i <= modelsize(sizeconditions); ++i) {
        elemload(1, i, 0) = 2;
        elemload(1, i, 1) = 1;
        elemload(1, i, 2) = 1;
    }
    const auto corners = room.corners(2);
    EXPECT_EQ(changeplates({2}, [](int e) { rotateaxis(e, false); }).rows, -1);
    EXPECT_EQ(room.corners(2), corners);
}

TEST(Checkmodel, TheFormTellsWhatItDid) {
    shellroom room;
    for (int i = 0; i < 6; ++i) addnode(float(i / 2), float(i % 2), 0);
    room.plate({1, 3, 4, 2});
    room.plate({3, 4, 6, 5});
    room.load(2, 3, 5);
    const point3 pressure = loadon(2);
    checkmodelform form = opencheckmodel();
    form.reference = 2;  // the selected element, and none is
    homogenizeaxis(form);
    EXPECT_NE(form.message.find("Select one plate"), std::string::npos);
    elemsel(0) = elemsel(1) = 1;
    rotpo(1) = 0.5;
    lctype(1) = casebuoyancy;
    homogenizeaxis(form);
    EXPECT_NE(form.message.find("2 element(s) checked, 1 mirrored, 1 turned; 1 load row(s) turned"),
              std::string::npos)
        << form.message;
    EXPECT_NE(form.message.find("buoyancy of load case"), std::string::npos);
    EXPECT_EQ(loadon(2), pressure);
    EXPECT_EQ(rotpo(1), 0.5);
    EXPECT_NEAR(rotpo(2), 0.5 - quarter, 1e-6);
    EXPECT_EQ(elemsel(0), 1);
    form.reference = 1;
    flipgroup(form);
    homogenizeaxis(form);
    EXPECT_EQ(axesofelement(1)[2][2], 1) << "as of the global axes";
    form.limit = "4";  // more than full agreement
    modifywrong(form);
    EXPECT_NE(form.message.find("2 are still below"), std::string::npos);
    EXPECT_EQ(elemsel(0), 2);
}

TEST(Checkmodel, ACancelledWalkLeavesWhatItDidNotReach) {
    shellroom room;
    const int n = 99;
    modelsize(sizenodes) = modelsize(sizeelements) = (n + 1) * (n + 1);
    resetmodel();
    for (int i = 0; i <= n; ++i)
        for (int j = 0; j <= n; ++j) addnode(float(i), float(j), 0);
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            const int a = (n + 1) * i + j + 1;
            room.plate({a, a + n + 1, a + n + 2, a + 1});
            rotpo(nelems()) = 1;
        }
    room.platform.cancelled = true;
    const walkresult result = homogenize(1, {});
    EXPECT_FALSE(result.whole);
    EXPECT_EQ(rotpo(1), 0);
    EXPECT_EQ(rotpo(nelems()), 1);
}
