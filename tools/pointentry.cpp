// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing modes. The element under construction stands behind the last one of the list until it
// is complete; ptcount counts its points.
#include "tools/pointentry.h"

#include <algorithm>
#include <string>

#include "core/colours.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/find.h"
#include "edit/pickplaces.h"
#include "edit/snap.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

namespace {
struct drawmode {
    Flag* flag;
    graphickinds kind;
    const char *name, *goal;
    struct {
        const char *first, *second;
    } prompt[3];  // by ptcount
};
}  // namespace

static const char stop[] = "<ESC> to stop", restart[] = "<ESC> to stop, <Enter> to restart";

static const drawmode drawmodes[] = {
    {&drawline,
     kindline,
     "Line",
     "for graphic line",
     {{"First point", stop}, {"Next point", restart}, {}}},
    {&drawcurve,
     kindcurve,
     "Curve",
     "for graphic curve",
     {{"Start point", stop}, {"End point", restart}, {"Point", restart}}},
    {&drawcircle,
     kindcircle,
     "Circle",
     "for graphic circle",
     {{"Start point", stop}, {"End point", stop}, {"Point on Circle", restart}}},
};

static const drawmode* activemode() {
    for (const drawmode& mode : drawmodes)
        if (*mode.flag) return &mode;
    return nullptr;
}

static void promptpoint() {
    const drawmode* const mode = activemode();
    if (mode == nullptr) return;
    const auto& words = mode->prompt[std::clamp(ptcount, 0, 2)];
    prompt("Define", words.first, mode->goal, words.second);
}

// Marks of the points that the element under construction has, in drawcolor.
static void drawmarks(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || activemode() == nullptr || ptcount == 0) return;
    const double radius = 0.08;  // centimetres
    const float scale = viewscale(nview);
    const keptpen pen(s);
    prepareview(nview);
    s->fillsolid = true;
    s->fillcolor = drawcolor;
    for (int j = 1; j <= ptcount; ++j) {
        const auto at = graphics.row(ngraphics() + 1, j);
        curx = scale * at[1];
        cury = scale * at[2];
        curz = scale * at[3];
        projectpoint(nview);
        s->circle(scrx, scry, radius, drawcolor);
    }
}

static void showmarks() {
    const keptpoint kept;
    const keptpen pen;
    drawcolor = selcolor;
    for (int v = 1; v <= shownviews(); ++v) {
        surface* const s = target(v);
        if (s == nullptr) continue;
        s->clearplane(planes::marks);
        s->toplane(planes::marks);
        drawmarks(v);
        s->show();
    }
}

static void endfollow() {
    for (int v = 1; v <= shownviews(); ++v)
        if (surface* const s = target(v)) s->clearplane(planes::pointer);
}

// The element as it would be with its next point under the pointer, in dots.
static void followpointer(int nview) {
    const drawmode* const mode = activemode();
    surface* const s = target(nview);
    if (mode == nullptr || s == nullptr || ptcount == 0 || ngraphics() >= graphics.upper1) return;
    const int g = ngraphics() + 1;
    const bool last = ptcount + 1 == pointsofgraphic(mode->kind);
    setdefinitionpoint(graphics, g, ptcount + 1, {modelx, modely, modelz});
    graphics(g, 0, 0) = float(last ? mode->kind : kindline);
    s->clearplane(planes::pointer);
    const keptpen pen(s);
    const onplane top(*s, planes::pointer);
    s->drawstyle = pens::dotted;
    prepareview(nview);
    drawcolor = graphcolor;
    drawgraphic(graphics, g, nview);
    s->show();
}

static void drawfinished(int g) {
    if (!mnudrawlist(graphicsdrawn).checked) return;
    drawinviews([g](int v) {
        drawcolor = graphcolor;
        drawgraphic(graphics, g, v);
        drawgraphicnodes(graphics, g, v);
    });
}

static void needroom() {
    if (growfor({{sizegraphics, ngraphics() + 1}})) return;
    addready();
    throw runtimeerror{errsubscript,
                       "All " + std::to_string(modelsize(sizegraphics)) +
                           " graphic elements declared are in use. Increase 'Number of graphic "
                           "elements' with [File,Model size..]"};
}

// The element is whole: the next one starts at its second point.
static void acceptelement() {
    const int g = ngraphics() + 1;
    graphics(0, 0, 0) = float(g);
    drawfinished(g);
    needroom();
    std::ranges::copy(graphics.row(g, 2), graphics.row(g + 1, 1).begin());
    ptcount = 1;
}

static void snapgiven() {
    if (!MnuSelectItem(selectsnap).checked) return;
    const float scale = viewscale(activeview);
    prepareview(activeview);
    curx = float(scale * modelx);
    cury = float(scale * modely);
    curz = float(scale * modelz);
    projectpoint(activeview);
    snapto(activeview);
}

static void placepoint(const drawmode& mode) {
    needroom();
    snapgiven();
    const int g = ngraphics() + 1;
    if (ptcount == 0) std::ranges::fill(graphics.row(g, 2), 0.0f);
    const point3 at = {modelx, modely, modelz};
    if (ptcount < 2) openrecord(graphics, g, mode.kind);
    graphics(g, 0, 0) = float(mode.kind);
    setdefinitionpoint(graphics, g, ptcount + 1, at);
    ++ptcount;
    if (ptcount == pointsofgraphic(mode.kind)) acceptelement();
    showmarks();
}

void addgraphicpoint(pointsteps step) {
    const drawmode* const mode = activemode();
    if (mode == nullptr) return;
    if (step == pointsteps::place) {
        placepoint(*mode);
    } else if (ptcount > 0) {
        --ptcount;
        endfollow();
        showmarks();
    }
    promptpoint();
}

void startdrawing(graphickinds kind) {
    for (const drawmode& mode : drawmodes) {
        if (mode.kind != kind) continue;
        startmode(*mode.flag);
        ptcount = 0;
        mnuEditItem(undoitem).enabled = false;
        checkonly(Mnuadditem, graphicitem);
        promptpoint();
    }
}

static void restartchain() {
    ptcount = 0;
    endfollow();
    showmarks();
    promptpoint();
}

void wirepointentry() {
    // A redraw keeps the marks.
    layerrow& row = layer(layers::selectedgraphics);
    row.draw = [selected = row.draw](int nview) {
        const colour c = drawcolor;
        if (selected) selected(nview);
        drawcolor = c;
        drawmarks(nview);
    };
    for (const drawmode& mode : drawmodes) {
        moderow m;
        m.flag = mode.flag;
        m.name = mode.name;
        m.snaps = true;
        acceptpoints(m, [](int) { addgraphicpoint(pointsteps::place); });
        m.enter = restartchain;
        m.back = [] { addgraphicpoint(pointsteps::back); };
        m.follow = followpointer;
        m.end = [] {
            ptcount = 0;
            endfollow();
            redrawall();
        };
        modes().push_back(m);
    }
}
