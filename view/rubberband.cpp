// SPDX-License-Identifier: GPL-3.0-or-later
// The drag box. It lies on the plane of the pointer, so that taking it away leaves no trace.
#include "view/rubberband.h"

#include "core/views.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/surface.h"

double bandx, bandy;
static double lastx, lasty;
static int lastview;  // 0: no box stands

static void box(int nview, colour c) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpen pen(s);
    const onplane top(*s, planes::pointer);
    s->drawstyle = pens::dotted;
    s->fillsolid = false;
    s->drawwidth = 1;
    s->box(bandx, bandy, lastx, lasty, c);
    s->show();
}

void startband(double x, double y) {
    endband();
    bandx = x;
    bandy = y;
}

void rubberband(int nview) {
    if (lastview != 0) box(lastview, backcolor);
    lastx = scrx;
    lasty = scry;
    lastview = nview;
    box(nview, drawcolor);
}

void endband() {
    if (lastview != 0) box(lastview, backcolor);
    lastview = 0;
}
