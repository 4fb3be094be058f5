// SPDX-License-Identifier: GPL-3.0-or-later
// The kept pen.
#include "view/pen.h"

#include "core/colours.h"
#include "view/scaleview.h"

keptpen::keptpen(surface* s) : on(s), drawn(drawcolor), shape(undeformed) {
    if (on == nullptr) return;
    width = on->drawwidth;
    style = on->drawstyle;
    filled = on->fillsolid;
    filling = on->fillcolor;
    erasing = on->erasing;
}

keptpen::~keptpen() {
    drawcolor = drawn;
    undeformed = shape;
    if (on == nullptr) return;
    on->drawwidth = width;
    on->drawstyle = style;
    on->fillsolid = filled;
    on->fillcolor = filling;
    on->erasing = erasing;
}

colour shown(colour c) {
    return drawcolor == backcolor ? backcolor : c;
}

colour paperink(colour c) {
    const int palest = 225;
    const bool pale = redof(c) >= palest && greenof(c) >= palest && blueof(c) >= palest;
    return pale ? rgb(0, 0, 0) : c;
}
