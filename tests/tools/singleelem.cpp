// SPDX-License-Identifier: GPL-3.0-or-later
// Single elements: the choices, corners by press and by command, the end of the picking.
#include "tools/singleelem.h"

#include <algorithm>

#include "core/catalogue.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/selection.h"
#include "tests/support/recorder.h"
#include "tools/genmesh.h"

namespace {
// Four nodes, and the mode in its table.
struct singleroom : sessionroom {
    singleroom() {
        if (modes().empty()) wiremouse();
        if (std::ranges::none_of(modes(), [](auto& row) { return row.flag == &addelemmode; }))
            wiresingleelem();
        for (const float x : {0.0f, 1.0f, 2.0f, 3.0f}) addnode(x, x * x, 0);
    }
    ~singleroom() { addready(); }
    void start(const char* type) {
        form = openaddsingle();
        for (std::size_t i = 0; i < form.types.size(); ++i)
            if (form.types[i] == type) choosesingletype(form, int(i));
        startsingle([this] { ++ended; });
    }
    void pick(std::initializer_list<int> list) {
        for (const int n : list) addelementnode(n);
    }
    addsingleform form;
    int ended = 0;
};
}  // namespace

TEST(Singleelem, AnElementIsMadeWhenItsCornersAreThere) {
    const struct {
        const char* type;
        std::initializer_list<int> picks;
        std::array<int, 4> corners;
    } cases[] = {
        {"MASS", {3}, {3, 0, 0, 0}},
        {"MEMB3", {1, 2, 2, 3, 4}, {1, 3, 4, 0}},     // a node picked twice is taken back
        {"MEMB4", {0, 4, 9, 3, 2, 1}, {4, 3, 2, 1}},  // no such nodes
    };
    for (const auto& c : cases) {
        singleroom room;
        room.start(c.type);
        room.pick(c.picks);
        ASSERT_EQ(nelems(), 1) << c.type;
        EXPECT_EQ(elems(1, 0), findtype(c.type));
        for (int k = 1; k <= 4; ++k) EXPECT_EQ(elems(1, k), c.corners[std::size_t(k - 1)]);
        EXPECT_TRUE(elemvis(activeview, 1));
        EXPECT_EQ(nodesel(0), 0);
        if (eltypnodes(mesheltype) > 1) room.pick({1});
        keyhandler(keyescape);
        EXPECT_EQ(room.ended, 1);
        EXPECT_EQ(nelems(), 1) << "an element without all its corners is dropped";
    }
}

TEST(Singleelem, CommandsMakeTheNodesThatAreMissing) {
    singleroom room;
    automergenodes = true;
    room.start("MEMB4");
    room.pick({1});
    runcommand("dx=5");    // from the first corner
    runcommand("dx=5;5");  // again from the first one
    runcommand("ax=0.0001;5;0");
    ASSERT_EQ(nelems(), 1);
    EXPECT_EQ(nodes(0, 5, 0), 5);
    EXPECT_EQ(nodes(0, 6, 1), 5);
    room.pick({2});
    runcommand("ax=5;5.0002;0");  // merges with node 6 when the picking ends
    keyhandler(keyback);          // takes it back as a corner
    room.pick({3, 4, 7});
    ASSERT_EQ(nelems(), 2);
    keyhandler(keyenter);
    EXPECT_EQ(nnodes(), 7);
    EXPECT_EQ(elems(2, 4), 7);
}

TEST(Singleelem, AFullModelIsToldAndKept) {
    singleroom room;
    room.start("BEAM");
    elems(0, 0) = float(elems.upper1);
    room.pick({1, 2});
    EXPECT_EQ(nelems(), elems.upper1);
    EXPECT_TRUE(room.platform.toldpart("Increase number of nodes or elements"));
    elems(0, 0) = 0;
}
