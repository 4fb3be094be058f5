// SPDX-License-Identifier: GPL-3.0-or-later
// Axes of the selected elements.
#include "loads/loadaxes.h"

#include <algorithm>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "view/localaxes.h"
#include "view/moddraw.h"
#include "view/scaleview.h"
#include "view/symbolstyle.h"

static const int mostaxes = 300;  // elements; more axes would hide the model and each other

static void drawnumber(int e, int k, int nview) {
    surface* const s = target(nview);
    localaxes(e);
    const double* const axis[] = {localx, localy, localz};
    const float scale = viewscale(nview);
    const auto at = [&](int i) {
        return float(axisorigin[i] * scale + 1.15 * symbollength() * axis[k - 1][i]);
    };
    curx = at(0);
    cury = at(1);
    curz = at(2);
    projectpoint(nview);
    const char number[] = {char('0' + k), 0};
    s->moveto(scrx - s->textwidth(number) / 2, scry - s->textheight() / 2);
    s->text(number);
}

static void drawloadaxes(int nview) {
    surface* const s = target(nview);
    if (!editelemload || s == nullptr) return;
    const colour before = drawcolor;
    for (int i = 1; i <= std::min(int(elemsel(0)), mostaxes); ++i) {
        const int e = int(elemsel(i));
        drawlocalaxes(e, nview);
        s->textcolor = before == backcolor ? backcolor : selcolor;
        for (int k = 1; k <= 3; ++k) drawnumber(e, k, nview);
    }
    drawcolor = before;
}

void wireloadaxes() {
    layerrow& row = layer(layers::selectedelements);
    row.draw = [selected = row.draw](int nview) {
        if (selected) selected(nview);
        drawloadaxes(nview);
    };
}
