// SPDX-License-Identifier: GPL-3.0-or-later
// The cube of the axes against the projection, and the reduced picture of a large model.
#include "view/viewcube.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/colours.h"
#include "core/newmodel.h"
#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/quickdraw.h"
#include "view/scaleview.h"

// Its corners lie where the projection puts them; a face or corner that is pressed lies in the
// middle after it, facing the eye.
TEST(Viewcube, APlaceOnItIsLookedAtStraight) {
    const sessionroom room;
    viewdist(1) = 1e30f;
    viewscale(1) = 1;
    int faces = 0, corners = 0;
    const auto lookat = [](double vertical, double horizontal) {
        viewvert(1) = float(toradians(vertical));
        viewhor(1) = float(toradians(horizontal));
    };
    for (const auto& [v, h] : {std::pair(45.0, 45.0), {30, -100}, {-35, 160}, {60, 10}}) {
        lookat(v, h);
        const viewcube cube(1, {0, 0}, 1);
        for (const cubepart& corner : cube.corners) {
            int sign[3], k = 0;
            for (std::size_t i = 0; i < corner.name.size(); ++i)
                if (corner.name[i] >= 'X') sign[k++] = i > 0 && corner.name[i - 1] == '-' ? -1 : 1;
            prepareview(1);
            projectplace(1, sign[0], sign[1], sign[2]);
            EXPECT_NEAR(corner.outline[0].x, persu, 1e-5) << corner.name;
            EXPECT_NEAR(corner.outline[0].y, -persv, 1e-5) << corner.name;
            EXPECT_EQ(cube.at(corner.outline[0].x, corner.outline[0].y), &corner);
            lookat(corner.vertical, corner.horizontal);
            const viewcube straight(1, {0, 0}, 1);
            const cubepart* const seen = straight.at(0, 0);
            EXPECT_TRUE(seen != nullptr && seen->facing > 0.8) << corner.name;
            lookat(v, h);
            ++corners;
        }
        for (const cubepart& face : cube.faces) {
            const double slanting = 0.2;  // cosine up to which a corner may lie over its middle
            if (face.facing < slanting) continue;
            point2 middle{0, 0};
            for (const point2& p : face.outline) middle = {middle.x + p.x / 4, middle.y + p.y / 4};
            const cubepart* const under = cube.at(middle.x, middle.y);
            ASSERT_TRUE(under) << face.name;
            EXPECT_EQ(under->name, face.name);
            lookat(face.vertical, face.horizontal);
            const viewcube straight(1, {0, 0}, 1);
            ASSERT_TRUE(straight.at(0, 0)) << face.name;
            EXPECT_EQ(straight.at(0, 0)->name, face.name);
            EXPECT_NEAR(straight.at(0, 0)->facing, 1, 1e-6);
            lookat(v, h);
            ++faces;
        }
    }
    EXPECT_EQ(faces, 10);
    EXPECT_EQ(corners, 10);
}

// A sheet of 150 x 150 quadrilaterals, folded along its middle.
static const int sheetside = 150;

static void makesheet() {
    const int side = sheetside;
    for (int i = 1; i <= 2; ++i) modelsize(i) = (side + 1) * (side + 1) + 10;
    ASSERT_TRUE(resetmodel());
    viewdist(2) = 1e30f;
    viewscale(2) = 0.1f;
    EXPECT_FALSE(isquickwanted());
    for (int j = 0; j <= side; ++j)
        for (int i = 0; i <= side; ++i)
            addnode(float(i) - 75, float(j) - 75, std::fabs(float(i) - 75));
    for (int j = 0; j < side; ++j)
        for (int i = 0; i < side; ++i) {
            const int a = j * (side + 1) + i + 1;
            addelement(3, {a, a + 1, a + side + 2, a + side + 1});
        }
}

// Also beside what is hidden, and where a corner lies outside the slab.
TEST(Largepicture, EachLineIsDrawnOnce) {
    sessionroom room;
    makesheet();
    const auto lines = [&] {
        room.platform.views[1].operations.clear();
        drawview(2);
        return room.platform.views[1].count("line");
    };
    const int side = sheetside, whole = 2 * side * (side + 1);
    mnuSettingsItem(globalaxison).checked = false;
    EXPECT_EQ(lines(), whole);
    viewtype(2) = 1;
    viewselnum(2) = 1;
    for (int e = 1; e <= side * side; ++e) elemvis(2, e) = (e - 1) / side < side / 2;
    EXPECT_EQ(lines(), whole / 2 + side / 2) << "the lower half, with its upper border";
}

// Its border and the fold come first.
TEST(Quickdraw, BordersAndFoldsComeBeforeTheRest) {
    sessionroom room;
    makesheet();
    const int side = sheetside, edges = 5 * side;
    EXPECT_TRUE(isquickwanted());
    room.platform.views[1].operations.clear();
    drawquick(2);
    const auto& drawn = room.platform.views[1].operations;
    int lines = 0, first = 0;
    for (const std::string& operation : drawn) {
        double x1, y1, x2, y2;
        if (std::sscanf(operation.c_str(), "line %lf %lf %lf %lf", &x1, &y1, &x2, &y2) != 4)
            continue;
        const auto along = [&](double x, double y) {
            return (x1 == x && x2 == x) || (y1 == y && y2 == y);
        };
        if (++lines > edges) continue;
        first += along(2.5, 12.5) || along(17.5, -2.5) || (x1 == 10 && x2 == 10);
    }
    EXPECT_EQ(first, edges);
    EXPECT_GT(lines, 2 * edges) << "and some of the others";
}
