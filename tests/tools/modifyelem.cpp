// SPDX-License-Identifier: GPL-3.0-or-later
// Changes of the selected elements.
#include "tools/modifyelem.h"

#include "core/catalogue.h"
#include "tests/support/recorder.h"
#include "tools/Graphics.h"
#include "view/localaxes.h"

namespace {
// Two quadrilaterals, a triangle and a bar on five nodes, all selected.
struct elementroom : sessionroom {
    elementroom() {
        for (int i = 0; i < 5; ++i) addnode(float(i), float(i * i), 0);
        groups(0, 0) = 2;
        addelement(findtype("MEMB4"), {1, 2, 3, 4}, 1);
        addelement(findtype("SHELL4"), {2, 3, 4, 5}, 2);
        addelement(findtype("MEMB3"), {1, 2, 3}, 1);
        addelement(findtype("TRUSS"), {1, 5}, 1);
        for (int e = 1; e <= 4; ++e) elemsel(e) = float(e);
        elemsel(0) = 4;
    }
    static std::string nameof(int e) { return eltypname(long(elems(e, 0))); }
    static std::vector<int> corners(int e) {
        std::vector<int> list;
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) list.push_back(int(elems(e, k)));
        return list;
    }
};
}  // namespace

TEST(Modifyelem, TypeAndGroupOfThoseThatAreMeant) {
    elementroom room;
    modifyelemform form = openmodifyelem();
    form.fromtype = 1;  // MEMB4
    form.totype = findtype("PLATE4");
    form.fromgroup = 2;  // no MEMB4 in it
    modselelem(form);
    EXPECT_EQ(room.nameof(1), "MEMB4");
    form.fromgroup = 1;
    form.togroup = 2;
    modselelem(form);
    EXPECT_EQ(room.nameof(1), "PLATE4");
    EXPECT_EQ(form.message, "Element succesfully Modified!");
    EXPECT_EQ(form.fromtypes,
              (std::vector<std::string>{"All", "PLATE4", "SHELL4", "MEMB3", "TRUSS"}));
    EXPECT_EQ(form.fromtype, 1) << "no MEMB4 is selected any more, the same elements are meant";
    EXPECT_EQ(egroup(1), 2);
    EXPECT_EQ(egroup(3), 1);
    EXPECT_EQ(room.nameof(2), "SHELL4");
    for (const int from : {3, 0}) {  // another number of nodes
        form.fromtype = from;
        modselelem(form);
        EXPECT_EQ(form.message, "Element types not compatible!") << from;
        EXPECT_EQ(room.nameof(3), "MEMB3");
    }
    form.fromtype = 3;
    form.fromgroup = 2;  // none of these is meant, the types fit no better
    modselelem(form);
    EXPECT_EQ(form.message, "Element types not compatible!");
    elemsel(0) = 0;
    modselelem(form);
    EXPECT_EQ(form.message, "") << "nothing happens without a selection";
}

TEST(Modifyelem, TurnsAndMirrorsTheNodes) {
    elementroom room;
    rotpo(1) = 0.5;
    modifyelemform form = openmodifyelem();
    form.rotate = true;
    modselelem(form);
    EXPECT_EQ(room.corners(1), (std::vector<int>{2, 3, 4, 1}));
    EXPECT_EQ(room.corners(3), (std::vector<int>{2, 3, 1}));
    form.rotate = false;
    form.mirror = true;
    modselelem(form);
    EXPECT_EQ(room.corners(1), (std::vector<int>{3, 2, 1, 4}));
    EXPECT_EQ(rotpo(1), -0.5);
}

// The load on an element in model axes.
static point3 loadon(int e) {
    localaxes(e);
    point3 sum{};
    for (int i = 1; i <= int(elemload(1, 0, 0)); ++i) {
        if (int(elemload(1, i, 0)) != e) continue;
        const double* const axis[] = {localx, localy, localz};
        for (std::size_t k = 0; k < 3; ++k)
            sum[k] += double(elemload(1, i, 2)) * axis[int(elemload(1, i, 1)) - 1][k];
    }
    return sum;
}

TEST(Modifyelem, LoadsAndReleasesStayWhereTheyPoint) {
    elementroom room;
    const float rows[][3] = {{1, 3, 10}, {1, 1, 4}, {2, 2, -7}, {4, 1, 5}, {4, 2, 6}, {4, 3, 8}};
    for (const auto& row : rows) {
        const int i = int(elemload(1, 0, 0)) + 1;
        for (int k = 0; k < 3; ++k) elemload(1, i, k) = row[k];
        elemload(1, 0, 0) = float(i);
    }
    nodes(0, 3, 2) = 1;
    endrelease(4, 1, 5) = 1;
    modifyelemform form = openmodifyelem();
    for (const bool mirror : {false, true}) {
        std::vector<point3> before;
        for (int e = 1; e <= 4; ++e) before.push_back(loadon(e));
        form.mirror = mirror;
        form.rotate = !mirror;
        modselelem(form);
        EXPECT_EQ(endrelease(4, mirror ? 1 : 2, 5), 1) << "with its node";
        for (int e = 1; e <= 4; ++e)
            EXPECT_LT(lengthof(loadon(e) - before[std::size_t(e) - 1]), 1e-4) << e << mirror;
    }
    elemload(1, 0, 0) = float(modelsize(sizeconditions));
    const auto corners = room.corners(2);
    for (int i = 1; i <= modelsize(sizeconditions); ++i) elemload(1, i, 0) = elemload(1, i, 1) = 2;
    form.mirror = false;
    form.rotate = true;
    modselelem(form);
    EXPECT_NE(form.message.find("nothing was changed"), std::string::npos);
    EXPECT_EQ(room.corners(2), corners);
    EXPECT_EQ(endrelease(4, 1, 5), 1) << "turned back with the rest";
}

TEST(Modifyelem, TellsHowManyLoadRowsWereTurned) {
    sessionroom room;
    const float square[][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (const auto& at : square) addnode(at[0], at[1], 0);
    addelement(findtype("SHELL4"), {1, 2, 3, 4}, 1);
    elemsel(0) = elemsel(1) = 1;
    elemload(1, 0, 0) = elemload(1, 1, 0) = 1;
    elemload(1, 1, 1) = 3;
    elemload(1, 1, 2) = 10;
    modifyelemform form = openmodifyelem();
    form.rotate = true;  // about the normal, along which the pressure acts
    modselelem(form);
    EXPECT_EQ(form.message, "Element succesfully Modified!");
    form.mirror = true;
    modselelem(form);
    EXPECT_NE(form.message.find("! 1 load row was turned"), std::string::npos) << form.message;
    EXPECT_EQ(elemload(1, 1, 2), -10);
}
