// SPDX-License-Identifier: GPL-3.0-or-later
// Layout of the views and all that changes what a view looks at.
#include "view/setviews.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "view/autoscale.h"
#include "view/camera.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/scaleview.h"

const viewpreset viewpresets[4] = {
    {"ISO", 45, 45}, {"X-Y", 90, -90}, {"X-Z", 0, 90}, {"Y-Z", 0, 0}};

static const double cellshare = 0.995;  // of half the work area; the rest is the gap
static const double barthickness = 0.45, barclient = 15540;  // cm of bar in a client width, twips

// Position of the scroll bars when they were last read.
static int lasthorizontal[nviews + 1], lastvertical[nviews + 1];

twipbox viewplace(int nview, const twipbox& work, bool single) {
    const double width = work.width - sidebarw - sidebargap;
    twipbox box{work.left + sidebarw, work.top, width, work.height - 2};
    if (single) return box;
    const double halfwidth = width / 2, halfheight = work.height / 2;
    box.width = halfwidth * cellshare;
    box.height = halfheight * cellshare;
    if (nview == 2 || nview == 4) box.left += halfwidth;
    if (nview >= 3) box.top += halfheight;
    return box;
}

static twipbox placeinuse(int nview, const twipbox& work, bool single) {
    twipbox box = viewplace(nview, work, single);
    if (sidebyside) box.height = work.height - 2;
    return box;
}

static void placeviews(bool single) {
    const twipbox work = theplatform().workarea();
    for (int v = 1; v <= nviews; ++v) {
        const twipbox box = placeinuse(v, work, single);
        const int last = single ? 1 : sidebyside ? 2 : nviews;
        const bool shown = v <= last && box.width > 0 && box.height > 0;
        theplatform().placeview(v, box, shown);
    }
    double width = 0, height = 0;
    theplatform().viewsize(1, width, height);
    if (width > 0 && height > 0) {
        vieww = width;
        viewh = height;
    }
    scalex = scaley = single ? 1 : 0.5;
    singleview = single;
    setscrollbars();
    theplatform().refresh();
}

void setoneview() {
    sidebyside = false;
    placeviews(true);
}

void setfourviews() {
    sidebyside = false;
    placeviews(false);
}

void settwoviews() {
    sidebyside = true;
    placeviews(false);
}

void arrangeviews() {
    placeviews(singleview);
}

scrollrange scrollbarsof(double width, double height, double clientwidth) {
    const auto wholerange = [](double length, double extent) {
        return int(Integer(std::nearbyint(std::clamp(length / 2 * (extent / 2), 0.0, 32767.0))));
    };
    scrollrange range;
    range.thickness = clientwidth * barthickness / barclient;
    range.horizontal = wholerange(width - range.thickness, width);
    range.vertical = wholerange(height - range.thickness, height);
    return range;
}

void setscrollbars() {
    const twipbox work = theplatform().workarea();
    const scrollrange range = scrollbarsof(vieww, viewh, work.width);
    for (int v = 1; v <= nviews; ++v) {
        theplatform().setscrollbars(v, range);
        lasthorizontal[v] = lastvertical[v] = 0;
    }
}

// A view keeps its scale and point where others would be nothing or beyond a Single.
static void setscale(int nview, double scale) {
    const float single = float(scale);
    if (std::isfinite(single) && single != 0) viewscale(nview) = single;
}

static void setviewpoint(int nview, double x, double y, double z) {
    const float at[] = {float(x), float(y), float(z)};
    if (!std::isfinite(at[0]) || !std::isfinite(at[1]) || !std::isfinite(at[2])) return;
    viewptx(nview) = at[0];
    viewpty(nview) = at[1];
    viewptz(nview) = at[2];
}

// Moves the view point by the way from one place of the surface to another (cm).
static void movepoint(int nview, const point2& from, const point2& to) {
    const camera c = cameraof(nview);
    const scaledpoint old = unproject(c, from).scaled, now = unproject(c, to).scaled;
    setviewpoint(nview, viewptx(nview) + (now.x - old.x) / c.scale,
                 viewpty(nview) + (now.y - old.y) / c.scale,
                 viewptz(nview) + (now.z - old.z) / c.scale);
}

void scrollview(int nview, int horizontal, int vertical) {
    movepoint(nview, {double(lasthorizontal[nview]), double(lastvertical[nview])},
              {double(horizontal), double(vertical)});
    lasthorizontal[nview] = horizontal;
    lastvertical[nview] = vertical;
    drawview(nview);
}

void panview(int nview, double dx, double dy) {
    movepoint(nview, {dx, dy}, {0, 0});
}

void zoomview(int nview, double x, double y, double factor) {
    const double least = 1e-30, most = 1e30;
    const double scale = double(viewscale(nview)) * factor;
    if (!(std::fabs(scale) > least && std::fabs(scale) < most)) return;
    const backpoint before = unproject(cameraof(nview), {x, y});
    viewscale(nview) = float(scale);
    const backpoint after = unproject(cameraof(nview), {x, y});
    setviewpoint(nview, viewptx(nview) + (before.x - after.x),
                 viewpty(nview) + (before.y - after.y), viewptz(nview) + (before.z - after.z));
}

void zoomtonodes(int nview, const std::vector<int>& list) {
    const surface* const s = target(nview);
    if (s == nullptr || list.empty()) return;
    const keptpoint kept;
    prepareview(nview);
    double low[2] = {HUGE_VAL, HUGE_VAL}, high[2] = {-HUGE_VAL, -HUGE_VAL};
    for (const int n : list) {
        setnode(n, nview);
        projectpoint(nview);
        const double at[] = {scrx, scry};
        for (int k = 0; k < 2; ++k) {
            low[k] = std::min(low[k], at[k]);
            high[k] = std::max(high[k], at[k]);
        }
    }
    const double midx = s->width() / 2, midy = s->height() / 2;
    panview(nview, midx - (low[0] + high[0]) / 2, midy - (low[1] + high[1]) / 2);
    const double part = std::max((high[0] - low[0]) / s->width(), (high[1] - low[1]) / s->height());
    const double least = 1e-6;  // of the view: one place
    if (part > least) zoomview(nview, midx, midy, 0.5 / part);
    drawview(nview);
}

void setpreset(int nview, int preset) {
    lookfrom(nview, viewpresets[preset].vertical, viewpresets[preset].horizontal);
}

void lookfrom(int nview, double vertical, double horizontal) {
    viewvert(nview) = float(toradians(vertical));
    viewhor(nview) = float(toradians(horizontal));
    drawview(nview);
}

void turnangles(int nview, double horizontal, double vertical) {
    if (horizontal != 0) viewhor(nview) = float(toradians(todegrees(viewhor(nview)) + horizontal));
    if (vertical != 0) viewvert(nview) = float(toradians(todegrees(viewvert(nview)) + vertical));
}

void turnview(int nview, double horizontal, double vertical) {
    turnangles(nview, horizontal, vertical);
    drawview(nview);
}

void scaleview(int nview, double factor) {
    setscale(nview, viewscale(nview) * factor);
    drawview(nview);
}

void halveview(int nview) {
    scaleview(nview, 0.5);
    setscrollbars();
}

void doubleview(int nview) {
    scaleview(nview, 2);
    setscrollbars();
}

void fitview(int nview) {
    fit(nview);
    drawview(nview);
}

void copyvisibility(int from, int to) {
    viewselnum(to) = viewselnum(from);
    for (int e = 1; e <= nelems(); ++e) elemvis(to, e) = elemvis(from, e);
}

static void copyparameters(int from, int to) {
    for (auto* list : {&viewptx, &viewpty, &viewptz, &viewvert, &viewhor, &viewscale, &viewdist,
                       &viewaw, &viewdepth})
        (*list)(to) = (*list)(from);
    for (auto* list : {&viewgroup, &viewtype}) (*list)(to) = (*list)(from);
    copyvisibility(from, to);
}

void copyview(int sourceview, int targetview, double x1, double y1, double x2, double y2) {
    if (sourceview != targetview) copyparameters(sourceview, targetview);
    prepareview(targetview);
    const double a = std::fabs(x2 - x1), b = std::fabs(y2 - y1);
    const backpoint middle = unproject(cameraof(targetview), {(x1 + x2) / 2, (y1 + y2) / 2});
    setviewpoint(targetview, middle.x, middle.y, middle.z);
    const double r = a < b ? b : a;
    const double d = vieww < viewh ? vieww : viewh;
    const double q = r / viewscale(targetview);
    setscale(targetview, q == 0 ? 1 : d / q);
}

void leastwindow(double& width, double& height) {
    const double leastwidth = 8000, leastheight = 6000, raisedheight = 8000;
    if (width < leastwidth) width = leastwidth;
    if (height < leastheight) height = raisedheight;
}
