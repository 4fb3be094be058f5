// SPDX-License-Identifier: GPL-3.0-or-later
// Lasso, keys held, queries and sums: what they select in a small grid.
#include "edit/selectby.h"

#include <cmath>

#include "edit/Mouseprocedures.h"
#include "edit/lasso.h"
#include "edit/move.h"
#include "edit/selectionsums.h"
#include "tests/support/recorder.h"

namespace {
// View 2 looks along z: a model point x, y lies at 10 + x, 5 - y centimetres. 4 x 3 nodes at whole
// coordinates, 6 quadrilaterals, those of the upper row in group 2; a wall of 3 stands on the lower
// border, a bar joins two nodes far away.
struct facesroom : sessionroom {
    facesroom() {
        if (modes().empty()) wiremouse();
        viewdist(2) = 1e30f;
        automergenodes = false;
        for (int n = 0; n < 12; ++n) addnode(float(n % 4), float(n / 4), 0);
        for (const int n : {1, 2, 3, 5, 6, 7}) addelement(3, {n, n + 1, n + 5, n + 4}, 1 + n / 5);
        for (int n = 0; n < 4; ++n) addnode(float(n), 0, -1);
        for (int n = 1; n <= 3; ++n) addelement(3, {n, n + 1, n + 13, n + 12}, 1);
        addnode(8, 8, 0);
        addnode(8, 8, 2);
        addelement(1, {17, 18}, 1);
        groups(0, 0) = 2;
    }
    static void move(double x, double y) { viewmousemove(2, mousebuttons::left, 10 + x, 5 - y); }
    static void press(double x, double y, picks keys = picks::told) {
        pickmode = keys;
        viewmousedown(2, mousebuttons::left, 10 + x, 5 - y);
    }
    static void release(double x, double y) { viewmouseup(2, mousebuttons::left, 10 + x, 5 - y); }
    static void click(double x, double y, picks keys = picks::told) {
        press(x, y, keys);
        release(x, y);
    }
    static void box(double x1, double y1, double x2, double y2, picks keys) {
        press(x1, y1, keys);
        move(x2, y2);
        release(x2, y2);
    }
    ~facesroom() { pickmode = picks::told; }
};
using numbers = std::vector<int>;
}  // namespace

TEST(Selectby, CtrlAddsAndShiftTakesAwayInEveryMethod) {
    facesroom room;
    for (const auto keys : {picks::add, picks::add}) room.click(3, 2, keys);
    EXPECT_EQ(selectednodes(), numbers{12}) << "what is in already stays";
    room.click(2, 2, picks::takeaway);
    EXPECT_EQ(selectednodes(), numbers{12}) << "what is not in can not be taken out";
    room.click(3, 2, picks::takeaway);
    EXPECT_EQ(nodesel(0), 0);
    selecttype = selecttypes::window;
    room.box(-0.5, 0.5, 1.5, 2.5, picks::told);
    room.box(0.5, 1.5, 3.5, 2.5, picks::takeaway);
    EXPECT_EQ(selectednodes(), (numbers{5, 6, 9}));
    room.box(-0.5, 1.5, 1.5, 2.5, picks::add);
    EXPECT_EQ(selectednodes(), (numbers{5, 6, 9, 10})) << "each once";
    selecttype = selecttypes::all;
    room.click(0, 0, picks::takeaway);
    EXPECT_EQ(nodesel(0), 0);
    setselectitem(selectelements);
    selecttype = selecttypes::group;
    room.click(0.5, 1.5);
    EXPECT_EQ(selectedelements(), (numbers{4, 5, 6}));
    room.click(8, 8, picks::add);
    EXPECT_EQ(elemsel(0), 10);
    room.click(0.5, 1.5, picks::takeaway);
    EXPECT_EQ(selectedelements(), (numbers{1, 2, 3, 7, 8, 9, 10}));
}

// About the nodes 5, 6 and 9, not about 10, by a drag or corner by corner.
TEST(Selectby, ALassoTakesWhatItEncloses) {
    const std::pair<double, double> corners[] = {{-0.5, 0.5}, {1.6, 0.6}, {-0.4, 2.6}};
    for (const bool drags : {true, false}) {
        facesroom room;
        selecttype = selecttypes::lasso;
        for (const auto& [x, y] : corners) {
            if (drags)
                &corners[0].first == &x ? room.press(x, y) : room.move(x, y);
            else
                room.click(x, y);
        }
        EXPECT_EQ(nodesel(0), 0);
        if (drags)
            room.release(-0.4, 2.6);
        else
            viewmousedown(2, mousebuttons::right, 9, 3);
        EXPECT_EQ(selectednodes(), (numbers{5, 6, 9})) << drags;
        EXPECT_FALSE(windowdrag);
        for (const auto& [x, y] : corners) room.click(x, y, picks::takeaway);
        keyhandler(keyescape);
        EXPECT_EQ(lasso.view, 0) << "given up";
    }
    // A star and a comb against the rule itself, at many places.
    std::vector<point2> comb;
    for (int i = 0; i < 40; ++i) comb.push_back({double(i), i % 2 ? 10.0 : 1.0 + i % 7});
    comb.push_back({40, 0});
    comb.push_back({0, 0});
    const lassoshape shape(comb);
    for (double x = -1; x < 42; x += 0.37)
        for (double y = -1; y < 12; y += 0.23) {
            bool inside = false;
            for (std::size_t i = 0; i < comb.size(); ++i) {
                const point2 &a = comb[i], &b = comb[(i + 1) % comb.size()];
                if ((a.y > y) != (b.y > y) && x < a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x))
                    inside = !inside;
            }
            ASSERT_EQ(shape.holds(x, y), inside) << x << " " << y;
        }
}

TEST(Selectby, QueriesFindWhatTheyName) {
    using enum selectways;
    const struct {
        const char* name;
        selectquery query;
        numbers wanted;
    } cases[] = {
        {"numbers", {.numbers = "1-3, 12;7 , 14-16/2"}, {1, 2, 3, 7, 12, 14, 16}},
        {"turned round", {.numbers = "3-1"}, {1, 2, 3}},
        {"a name", {.numbers = "crane"}, {5}},
        {"beyond the last", {.ofnodes = false, .numbers = "9-99"}, {9, 10}},
        {"group", {.ofnodes = false, .way = group, .group = 2}, {4, 5, 6}},
        {"type, its nodes", {.way = type, .type = 1}, {17, 18}},
        {"between", {.way = coordinate, .axis = 1, .low = 3, .high = 2}, {9, 10, 11, 12}},
        {"middles",
         {.ofnodes = false, .way = coordinate, .axis = 0, .low = 1.5, .high = 1.5},
         {2, 5, 8}},
        {"face", {.ofnodes = false, .way = face}, {1, 2, 3, 4, 5, 6}},
        {"face round the corner",
         {.ofnodes = false, .way = face, .angle = 91},
         {1, 2, 3, 4, 5, 6, 7, 8, 9}},
        {"normal", {.ofnodes = false, .way = normal, .angle = 1}, {1, 2, 3, 4, 5, 6, 11}},
        {"joined", {.ofnodes = false, .way = joined}, {1, 2, 3, 4, 5, 6, 7, 8, 9}},
    };
    for (const auto& c : cases) {
        facesroom room;
        nodename(5) = "crane";
        for (const auto& [x, y] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}})
            addnode(float(x), float(y), 30);
        addelement(3, {19, 22, 21, 20}, 1);  // far above, turned over
        elems(0, 0) = c.query.way == normal ? 11 : 10;
        elemsel(0) = elemsel(1) = 1;
        const selectfound found = findby(c.query);
        EXPECT_EQ(found.fault, "") << c.name;
        EXPECT_EQ(found.items, c.wanted) << c.name;
    }
    facesroom room;
    for (const char* wrong : {"", "77", "two", "1-x", "3/0", "1-9/0"})
        EXPECT_NE(findby({.numbers = wrong}).fault, "") << wrong;
    EXPECT_NE(findby({.way = face}).fault, "") << "nothing to begin from";
    // From nodes; over a side that three faces share; and after the mesh has changed.
    nodesel(0) = 1;
    nodesel(1) = 13;
    EXPECT_EQ(findby({.ofnodes = false, .way = face}).items, (numbers{7, 8, 9}));
    nodesel(1) = 9;
    for (const float x : {0.0f, 1.0f}) addnode(x, -1, 0);
    addelement(3, {1, 2, 20, 19}, 1);
    EXPECT_EQ(findby({.ofnodes = false, .way = face}).items, (numbers{1, 2, 3, 4, 5, 6, 11}));
    EXPECT_EQ(findby({.ofnodes = false, .way = joined}).items.size(), 10u);
    elems(11, 1) = 14;
    elems(11, 2) = 13;
    EXPECT_EQ(findby({.ofnodes = false, .way = face}).items, (numbers{1, 2, 3, 4, 5, 6}));
    for (int n = 1; n <= 12; ++n) nodes(0, n, 2) = 0.1f * nodes(0, n, 0) + 0.7f * nodes(0, n, 1);
    EXPECT_EQ(findby({.ofnodes = false, .way = face, .angle = 0}).items,
              (numbers{1, 2, 3, 4, 5, 6}))
        << "one plane, whose normals are rounded";
}

// By hand: two unit squares 0.5 thick of density 2, and a bar of 2 with a section of 3.
TEST(Selectby, TheSelectionIsCountedAndSummed) {
    facesroom room;
    groups(1, fielddensity) = 2;
    groups(1, fieldthickness) = 0.5;
    EXPECT_EQ(selectioncounts(), "");
    selectlist(false, {1, 2}, picks::told);
    const std::size_t stamp = selectionstamp();
    EXPECT_EQ(selectioncounts(), "2 elements selected");
    EXPECT_EQ(sumstext(sumselection()), "area 2; mass 2; 2 x 1 x 0");
    selectlist(false, {10}, picks::add);
    EXPECT_NE(selectionstamp(), stamp);
    EXPECT_EQ(sumstext(sumselection()), "length 2; area 2; mass 4; 8 x 8 x 2");
    groups(2, fielddensity) = 0;
    selectlist(false, {5}, picks::add);
    EXPECT_EQ(sumstext(sumselection()), "length 2; area 3; mass (where known) 4; 8 x 8 x 2");
    selectlist(true, {1}, picks::told);
    EXPECT_EQ(selectioncounts() + sumstext(sumselection()), "1 node selected");
    nodesel(0) = 0;
    graphics(0, 0, 0) = 1;  // a line, picked by its first end
    graphics(1, 0, 0) = kindline;
    graphics(1, 2, 1) = 3;
    graphics(1, 2, 2) = 4;
    graphsel2(0, 0) = graphsel2(1, 0) = graphsel2(1, 1) = 1;
    syncgraphsel();
    EXPECT_EQ(selectioncounts() + " " + sumstext(sumselection()),
              "1 graphic element selected 3 x 4 x 0");
}
