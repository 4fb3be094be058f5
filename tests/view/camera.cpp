// SPDX-License-Identifier: GPL-3.0-or-later
// The projection as a value, and the registers as its face.
#include "view/camera.h"

#include "tests/support/recorder.h"
#include "view/scaleview.h"

TEST(Camera, KeepsItsViewAndTouchesNoRegister) {
    sessionroom room;
    viewscale(1) = 0.37f;
    viewptx(1) = 1.25f;
    viewdist(1) = 40;
    viewaw(1) = 3;
    const camera first = cameraof(1), second = cameraof(3);
    scrx = 3;
    scry = 4;
    unprojectpoint(1);
    const scaledpoint p{curx, cury, curz};
    const double scale = viewscale(1);
    EXPECT_TRUE(modelx == p.x / scale && modely == p.y / scale && modelz == p.z / scale)
        << "from the Singles, not from what they were rounded of";
    prepareview(1);
    projectpoint(1);
    const double x = scrx, y = scry, w = rotw, u = persu, v = persv, across = modelx;
    const float depth = perspw;
    viewhor(1) = 1;  // the camera is not the view's any more
    prepareview(2);
    project(second, p);
    const placedpoint again = project(first, p);
    EXPECT_EQ(again.at.x, x);
    EXPECT_EQ(again.at.y, y);
    EXPECT_EQ(again.depth, depth);
    EXPECT_EQ(again.turned.w, w);
    EXPECT_EQ(again.u, u);
    EXPECT_EQ(again.v, v);
    const backpoint back = unproject(first, {3, 4});
    EXPECT_EQ(back.scaled.z, p.z);
    EXPECT_EQ(back.x, across);
    unproject(second, {8, 8});
    EXPECT_TRUE(scrx == x && scry == y && curx == p.x && modelx == across && perspw == depth);
}
