// SPDX-License-Identifier: GPL-3.0-or-later
// Changes of the selected elements.
#include "tools/modifyelem.h"

#include "core/catalogue.h"
#include "core/model.h"
#include "tests/support/recorder.h"

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
    applymodifyelem(form);
    EXPECT_EQ(room.nameof(1), "MEMB4");
    form.fromgroup = 1;
    form.togroup = 2;
    applymodifyelem(form);
    EXPECT_EQ(room.nameof(1), "PLATE4");
    EXPECT_EQ(egroup(1), 2);
    EXPECT_EQ(egroup(3), 1);
    EXPECT_EQ(room.nameof(2), "SHELL4");
    for (const int from : {3, 0}) {  // another number of nodes
        form.fromtype = from;
        applymodifyelem(form);
        EXPECT_EQ(form.message, "Element types not compatible!") << from;
        EXPECT_EQ(room.nameof(3), "MEMB3");
    }
}

TEST(Modifyelem, TurnsAndMirrorsTheNodes) {
    elementroom room;
    rotpo(1) = 0.5;
    modifyelemform form = openmodifyelem();
    form.rotate = true;
    applymodifyelem(form);
    EXPECT_EQ(room.corners(1), (std::vector<int>{2, 3, 4, 1}));
    EXPECT_EQ(room.corners(3), (std::vector<int>{2, 3, 1}));
    form.rotate = false;
    form.mirror = true;
    applymodifyelem(form);
    EXPECT_EQ(room.corners(1), (std::vector<int>{3, 2, 1, 4}));
    EXPECT_EQ(rotpo(1), -0.5);
}
