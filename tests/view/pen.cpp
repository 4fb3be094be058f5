// SPDX-License-Identifier: GPL-3.0-or-later
// A redraw that fails half way leaves the pen, the plane and the point in work as they stood.
#include "view/pen.h"

#include <memory>
#include <tuple>

#include "tests/support/recorder.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

namespace {

struct failure {};

// One row of the table draws with everything changed and fails; the row comes back at the end.
class failinglayer {
  public:
    explicit failinglayer(layers which) : row(layer(which)), kept(row) {
        row.wanted = nullptr;
        row.draw = [](int nview) {
            surface& s = *target(nview);
            drawcolor = rgb(1, 2, 3);
            undeformed = 0;
            s.drawwidth = 7;
            s.drawstyle = pens::dotted;
            s.fillsolid = true;
            s.fillcolor = rgb(3, 2, 1);
            curx = 99;
            throw failure();
        };
    }
    ~failinglayer() { row = kept; }
    failinglayer(const failinglayer&) = delete;
    failinglayer& operator=(const failinglayer&) = delete;

  private:
    layerrow& row;
    const layerrow kept;
};

auto stateof(const recordsurface& s) {
    return std::tuple(drawcolor, undeformed, curx, s.drawwidth, s.drawstyle, s.fillsolid,
                      s.fillcolor, s.erasing);
}

}  // namespace

TEST(Pen, AFaultInAnyLayerLeavesNothingBehind) {
    sessionroom room;
    nodesel(0) = nodesel(1) = addnode(1, 2, 3);
    drawview(1);
    recordsurface& s = room.platform.views[0];
    s.fillcolor = rgb(9, 9, 9);
    const auto before = stateof(s);
    void (*const redraws[])() = {[] { drawview(1); }, [] { drawselectionall(); },
                                 [] { eraseselected(); },
                                 [] { drawinviews([](int v) { layer(layers::nodes).draw(v); }); }};
    int failed = 0;
    for (int which = 0; which < int(layers::count); ++which)
        for (const auto redraw : redraws) {
            const failinglayer fails{layers(which)};
            try {
                redraw();
            } catch (const failure&) {
                ++failed;
            }
            EXPECT_EQ(stateof(s), before) << "layer " << which;
            EXPECT_EQ(s.plane, planes::marks) << "layer " << which;
        }
    EXPECT_EQ(failed, int(layers::count) + 5 + 4 + 1) << "every redraw that has the layer";
}
