// SPDX-License-Identifier: GPL-3.0-or-later
// The table of layers and the redraws.
#include "view/moddraw.h"

#include <array>
#include <cmath>
#include <utility>

#include "core/diagramshown.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "view/drawconditions.h"
#include "view/drawelems.h"
#include "view/grouplegend.h"
#include "view/hidden.h"
#include "view/labels.h"
#include "view/localaxes.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/symbolstyle.h"

static const int smoothlimit = 20000;  // nodes or elements from which edges are not smoothed

static std::array<layerrow, std::size_t(layers::count)> table;

layerrow& layer(layers which) {
    return table[std::size_t(which)];
}

std::function<void(int nview, bool begins)> aroundview;

int shownviews() {
    const int both = 2;
    return sidebyside ? both : singleview ? 1 : nviews;
}

namespace {
struct guest {
    explicit guest(int v) : nview(v) {
        if (aroundview) aroundview(nview, true);
    }
    ~guest() {
        if (aroundview) aroundview(nview, false);
    }
    guest(const guest&) = delete;
    guest& operator=(const guest&) = delete;
    const int nview;
};
}  // namespace

hourglass::hourglass() {
    theplatform().hourglass(true);
}

hourglass::~hourglass() {
    theplatform().hourglass(false);
}

static bool contourin(int nview) {
    return isplotview(nview) && menupostItem(contourplot).checked;
}

static bool ishidden() {
    return mnudrawlist(hiddenline).checked;
}

static bool isshape() {
    return menupostItem(deformedshape).checked || menupostItem(modeshape).checked;
}

static void drawelementpass(int nview) {
    if (ishidden())
        drawhidden(nview);
    else
        drawallelements(nview);
}

static void drawdeformed(int nview) {
    drawcolor = defcolor;
    undeformed = 0;
    drawelementpass(nview);
}

static void drawallaxes(int nview) {
    for (int e = 1; e <= nelems(); ++e)
        if (isshown(e, nview)) drawlocalaxes(e, nview);
}

static void drawallreleases(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const keptpen pen(s);
    s->drawwidth = 3;
    for (int e = 1; e <= nelems(); ++e)
        for (int end = 1; end <= 2 && isshown(e, nview); ++end) drawendrelease(e, end, nview);
}

static void drawtriad(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const double ox = -0.8 * vieww / 2, oy = -0.8 * viewh / 2;
    const double length = 0.1 * std::sqrt(vieww * vieww + viewh * viewh) / (2 * scalex);
    static const colour axiscolors[] = {rgb(255, 0, 0), rgb(0, 255, 0), rgb(0, 0, 255)};
    static const char* const letters[] = {"X", "Y", "Z"};
    const keptpen pen(s);
    s->drawwidth = 1;
    s->font = labelfont();
    const keptpoint kept;
    for (int axis = 0; axis < 3; ++axis) {
        scrx = vieww / 2;
        scry = viewh / 2;
        unprojectpoint(nview);
        float* const along[] = {&curx, &cury, &curz};
        *along[axis] = float(*along[axis] + length);
        prepareview(nview);
        projectaxis(nview);
        const colour c = drawcolor == backcolor ? backcolor : axiscolors[axis];
        s->line(vieww / 2 + ox, viewh / 2 - oy, scrx + ox, scry - oy, c);
        s->moveto(scrx + ox, scry - oy);
        s->textcolor = c;
        s->text(letters[axis]);
    }
}

static void setlayer(layers which, planes plane, std::function<bool(int)> wanted,
                     std::function<void(int)> draw) {
    layerrow& row = layer(which);
    row.plane = plane;
    row.wanted = std::move(wanted);
    row.draw = std::move(draw);
}

static bool always(int) {
    return true;
}

static void wiremodellayers() {
    const auto graphicson = [](int) { return bool(mnudrawlist(graphicsdrawn).checked); };
    setlayer(layers::contour, planes::model, contourin, nullptr);
    setlayer(layers::graphicsfill, planes::model, graphicson, nullptr);
    setlayer(
        layers::nodes, planes::model,
        [](int v) { return mnudrawlist(nodesdrawn).checked && viewtype(v) == 0 && !ishidden(); },
        [](int v) {
            drawcolor = nodecolor;
            drawallnodes(v);
        });
    setlayer(
        layers::elements, planes::model,
        [](int v) { return mnudrawlist(elementsdrawn).checked && !contourin(v); },
        [](int v) {
            drawcolor = meshcolor;
            undeformed = 1;
            drawelementpass(v);
        });
    setlayer(
        layers::triad, planes::model, [](int) { return mnuSettingsItem(globalaxison).checked; },
        drawtriad);
    setlayer(layers::graphicslines, planes::model, graphicson, nullptr);
    setlayer(
        layers::lineelements, planes::model,
        [](int) {
            return mnudrawlist(elementsdrawn).checked && mnudrawlist(graphicsdrawn).checked &&
                   graphics(0, 0, 0) > 0 && !ishidden();
        },
        [](int v) {
            undeformed = contourin(v) && isshape() ? 0 : 1;
            drawlineelements(v);
        });
    setlayer(
        layers::patches, planes::model, [](int) { return mnudrawlist(patchesdrawn).checked; },
        nullptr);
    setlayer(
        layers::loads, planes::loads, [](int) { return !viewloads(noloads).checked; }, drawloads);
    setlayer(
        layers::constraints, planes::constraints,
        [](int) { return mnudrawlist(constraintsdrawn).checked; }, drawconstraints);
}

static void wireresultlayers() {
    setlayer(
        layers::deformed, planes::results, [](int v) { return isshape() && !contourin(v); },
        drawdeformed);
    setlayer(
        layers::elementstress, planes::results,
        [](int) { return menupostItem(elementstress).checked; }, nullptr);
    setlayer(layers::diagrams, planes::results, [](int) { return diagramshown; }, nullptr);
    setlayer(
        layers::localaxes, planes::results,
        [](int) { return mnuSettingsItem(localaxison).checked && !ishidden(); }, drawallaxes);
    setlayer(
        layers::endreleases, planes::results,
        [](int) { return mnuSettingsItem(endreleaseson).checked && !ishidden(); }, drawallreleases);
    setlayer(layers::extremes, planes::results, always, nullptr);
    setlayer(
        layers::grouplegend, planes::results,
        [](int v) {
            return v == 1 && symbolsdrawn.legend && elemlabeltype(elementcolours).checked;
        },
        [](int v) { drawgrouplegend(v); });
}

static void wiremarklayers() {
    setlayer(layers::selectedpatches, planes::marks, always, nullptr);
    setlayer(layers::selectedelements, planes::marks, always, drawselectedelements);
    // What is being added is listed with them until the mode ends, and no selection.
    setlayer(
        layers::selectednodes, planes::marks, [](int) { return !addnodemode; }, drawselectednodes);
    setlayer(layers::selectedgraphics, planes::marks, always, nullptr);
    setlayer(
        layers::selectedothers, planes::marks, [](int) { return previewbuffers; },
        [](int v) {
            if (drawcolor != backcolor) drawcolor = freecolor;
            drawbuffers(v);
        });
}

void wirelayers() {
    wiremodellayers();
    wireresultlayers();
    wiremarklayers();
}

// Each layer finds the pen as the picture began with it.
static void drawlayer(layers which, int nview) {
    const layerrow& row = layer(which);
    surface* const s = target(nview);
    if (s == nullptr || !row.draw || (row.wanted && !row.wanted(nview))) return;
    const keptpen pen(s);
    const onplane plane(*s, row.plane);
    row.draw(nview);
}

void drawsymbols(int nview) {
    for (const layers which : {layers::loads, layers::constraints, layers::localaxes})
        drawlayer(which, nview);
}

long picturesdrawn;

static int holds;
static bool missed;  // a picture that was asked for while it could not be drawn

drawinghold::drawinghold() {
    ++holds;
}

drawinghold::~drawinghold() {
    if (--holds > 0 || !std::exchange(missed, false)) return;
    guarded(redrawall, [](const runtimeerror& e) { theplatform().showstatus(e.what); });
}

void drawview(int nview) {
    ++picturesdrawn;
    surface* const s = target(nview);
    if (s == nullptr) return;
    if (holds > 0) {
        missed = true;
        return;
    }
    const hourglass wait;
    const guest own(nview);
    const keptpoint kept;
    drawcolor = meshcolor;
    const keptpen pen(s);
    setdispscale(nview);
    s->smooth = nelems() < smoothlimit && nnodes() < smoothlimit;
    s->clear(backcolor);
    freelabels();
    for (int i = 0; i < int(layers::selectedpatches); ++i) drawlayer(layers(i), nview);
    drawcolor = selcolor;
    drawselection(nview);
    s->show();
}

void drawselection(int nview) {
    const keptpoint kept;
    for (int i = int(layers::selectedpatches); i < int(layers::count); ++i)
        drawlayer(layers(i), nview);
}

void drawselectionall() {
    for (int v = 1; v <= shownviews(); ++v) drawselection(v);
    showviews();
}

static void drawonmodel(bool erase) {
    ++picturesdrawn;
    static const std::pair<layers, const colour*> rows[] = {
        {layers::selectedpatches, &edgecolor},
        {layers::selectedelements, &meshcolor},
        {layers::selectednodes, &nodecolor},
        {layers::selectedgraphics, &graphcolor}};
    const keptpoint kept;
    for (int v = 1; v <= shownviews(); ++v) {
        surface* const s = target(v);
        if (s == nullptr) continue;
        const keptpen pen(s);
        const onplane plane(*s, planes::model);
        s->erasing = erase;
        for (const auto& [which, own] : rows) {
            drawcolor = erase ? backcolor : *own;
            if (layer(which).draw) layer(which).draw(v);
        }
        s->show();
    }
}

void eraseselected() {
    drawonmodel(true);
}

void drawselectedplain() {
    drawonmodel(false);
}

void drawinviews(const std::function<void(int nview)>& draw) {
    const keptpoint kept;
    for (int v = 1; v <= shownviews(); ++v) {
        surface* const s = target(v);
        if (s == nullptr) continue;
        const keptpen pen(s);
        prepareview(v);
        {
            const onplane plane(*s, planes::model);
            draw(v);
        }
        s->show();
    }
}

void showviews() {
    for (int v = 1; v <= shownviews(); ++v)
        if (surface* const s = target(v)) s->show();
}

void redrawall() {
    const hourglass wait;
    for (int v = 1; v <= shownviews(); ++v) drawview(v);
}
