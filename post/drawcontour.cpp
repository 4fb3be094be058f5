// SPDX-License-Identifier: GPL-3.0-or-later
// The passes: painted faces from the farthest to the nearest, and coloured lines.
#include "post/drawcontour.h"

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "post/contour.h"
#include "post/legend.h"
#include "post/linelabels.h"
#include "post/painters.h"
#include "post/probe.h"
#include "view/drawelems.h"
#include "view/hidden.h"
#include "view/pen.h"
#include "view/scaleview.h"
#include "view/surface.h"

// On the filling of a band a label stands in its inverse, as on any filled element.
static void setfilling(surface& s, int e, int elnn) {
    const int middle = 5, band = elnn > 2 && isplotted(e) ? bandof(ev[middle]) : -1;
    s.fillsolid = contourfilled && plotready() && band >= 0;
    if (s.fillsolid) s.fillcolor = colour(indexcolor(band));
}

static void drawmesh(int e, int elnn, int nview) {
    surface* const s = target(nview);
    if (!mnudrawlist(elementsdrawn).checked || s == nullptr) return;
    drawcolor = colourofelement(e);
    setfilling(*s, e, elnn);
    if (elnn > 2 && iscrowded(e, nview))
        drawelementlabel(e, nview);  // outlines side by side would cover the plot
    else
        drawelement(e, nview);
    s->fillsolid = false;
}

// Do the bands leave nothing of the element's face?
static bool isfilledwhole(int e, int elnn) {
    if (!plotready() || !isplotted(e)) return false;
    for (int c = 1; c <= elnn; ++c)
        if (!(ev[c] >= indexmin && ev[c] <= indexmax && ev[c] < fillstart)) return false;
    return true;
}

static void paintelement(int e, int elnn, int nview) {
    prepareelement(e, nview);
    // With hidden lines a face covers what lies behind it, whatever is painted on it.
    if (mnudrawlist(hiddenline).checked && !(contourfilled && isfilledwhole(e, elnn)))
        paintface(nview, elnn, backcolor);
    if (!contourfilled) drawmesh(e, elnn, nview);
    if (plotready() && isplotted(e)) {
        if (contourfilled)
            paintfill(nview, elnn);
        else
            paintlines(nview, elnn);
    }
    if (contourfilled) drawmesh(e, elnn, nview);
}

void drawcontour(int nview) {
    sortdepth(nview);
    for (int i = 1; i <= nelems(); ++i) {
        const int e = int(elemdepth(i, 0));
        const int elnn = nodesoftype(elems(e, 0));
        if (elnn == 0 || !isshown(e, nview)) continue;
        if (elnn > 2)
            paintelement(e, elnn, nview);
        else
            drawmesh(e, elnn, nview);
    }
}

// Contours lie on the elements as they are drawn: displaced while a shape is on show.
void postdispatch(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    prepareplot();
    {
        const keptpen pen(s);
        s->drawwidth = 1;
        drawghost(nview);
        undeformed = isdeformed() ? 0 : 1;
        beginlinelabels();
        drawcontour(nview);
        drawlinelabels(nview);
    }
    drawlegend();
}

bool ghoston;

// Paler than the mesh, so that the shape stands out from it.
void drawghost(int nview) {
    surface* const s = target(nview);
    if (s == nullptr || !ghoston || !isdeformed()) return;
    const keptpen pen(s);
    prepareview(nview);
    undeformed = 1;
    drawcolor = mixed(meshcolor, backcolor, 0.65);
    s->drawwidth = 1;
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0 && isshown(e, nview)) drawelementoutline(e, nview);
}

// --- line elements ------------------------------------------------------------------------------

static void drawhalf(surface& s, const point2& a, const point2& b, double value) {
    const int k = bandof(value);
    if (k >= 0) s.line(a.x, a.y, b.x, b.y, colour(indexcolor(k)));
}

// Each half of the element in the colour of its end, or all of it in the colour of the mean.
static void drawhalves(surface& s, int e, int nview) {
    const point2 a = cornerplace(e, 1, nview), b = cornerplace(e, 2, nview);
    setcentre(e, nview);
    projectpoint(nview);
    if (!isinslab()) return;
    const point2 middle{scrx, scry};
    const double first = plotvalue(e, 1), second = plotvalue(e, 2), mean = (first + second) / 2;
    drawhalf(s, a, middle, contourfilled ? first : mean);
    drawhalf(s, middle, b, contourfilled ? second : mean);
}

void drawelementstress(int nview) {
    const int strokewidth = 3;
    surface* const s = target(nview);
    if (s == nullptr || !prepareplot()) return;
    const keptpen pen(s);
    prepareview(nview);
    undeformed = isdeformed() ? 0 : 1;
    s->drawwidth = strokewidth;
    for (int e = 1; e <= nelems(); ++e)
        if (isplotted(e) && isshown(e, nview)) drawhalves(*s, e, nview);
    if (nview == 1) drawlegend();
}
