// SPDX-License-Identifier: GPL-3.0-or-later
// Local axes of elements.
#include "view/localaxes.h"

#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "view/scaleview.h"
#include "view/surface.h"
#include "view/symbolstyle.h"

double axisorigin[3], localx[3], localy[3], localz[3];
Flag axesonly(false);

static void normalise(double* v) {
    const double length = std::pow(v[0] * v[0] + v[1] * v[1] + v[2] * v[2], 0.5);
    if (length == 0) return;
    for (int k = 0; k < 3; ++k) v[k] /= length;
}

static void cross(const double* a, const double* b, double* c) {
    c[0] = a[1] * b[2] - a[2] * b[1];
    c[1] = a[2] * b[0] - a[0] * b[2];
    c[2] = a[0] * b[1] - a[1] * b[0];
}

// e1 and a vector in the plane stand; e3 is their normal and e2 completes the triad.
static void finishplate(const double* inplane) {
    normalise(localx);
    cross(localx, inplane, localz);
    normalise(localz);
    cross(localz, localx, localy);
    normalise(localy);
}

// Turns a towards b, both at right angles to the axis.
static void turnpair(double* a, double* b, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    for (int k = 0; k < 3; ++k) {
        const double first = a[k], second = b[k];
        a[k] = c * first + s * second;
        b[k] = -s * first + c * second;
    }
}

void rotatequad(int e) {
    turnpair(localy, localz, toradians(groups(egroup(e), fieldrotation)));
}

static void finishline(int e) {
    normalise(localx);
    if (localx[0] == 0 && localx[1] == 0 && localx[2] == 0) return;
    if (localx[0] == 0 && localx[1] == 0) {
        localy[0] = localy[2] = 0;
        localy[1] = 1;
    } else {
        localy[0] = -localx[1];
        localy[1] = localx[0];
        localy[2] = 0;
        normalise(localy);
    }
    cross(localx, localy, localz);
    normalise(localz);
    rotatequad(e);
}

void localaxes(int e) {
    const int elnn = nodesoftype(elems(e, 0));
    double at[4][3] = {};
    for (int k = 0; k < 3; ++k) axisorigin[k] = localx[k] = localy[k] = localz[k] = 0;
    if (elnn == 0) return;
    for (int c = 0; c < elnn; ++c)
        for (int k = 0; k < 3; ++k) {
            at[c][k] = nodes(0, long(elems(e, c + 1)), k);
            axisorigin[k] += at[c][k] / elnn;
        }
    double inplane[3];
    for (int k = 0; k < 3; ++k) {
        if (elnn == 4) {
            localx[k] = (at[1][k] + at[2][k] - at[0][k] - at[3][k]) / 2;
            inplane[k] = (at[3][k] - at[0][k]) / 2;
        } else if (elnn >= 2) {
            localx[k] = at[1][k] - at[0][k];
            inplane[k] = at[2][k] - at[0][k];
        }
    }
    if (elnn >= 3)
        finishplate(inplane);
    else if (elnn == 2)
        finishline(e);
}

void drawstroke(const float* from, const double* direction, double length, int nview, colour c) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    curx = from[0];
    cury = from[1];
    curz = from[2];
    projectpoint(nview);
    const double x = scrx, y = scry;
    curx = float(from[0] + length * direction[0]);
    cury = float(from[1] + length * direction[1]);
    curz = float(from[2] + length * direction[2]);
    projectpoint(nview);
    s->line(x, y, scrx, scry, c);
}

void turnedplateaxes(int e) {
    if (nodesoftype(elems(e, 0)) > 2 && rotpo(e) != 0) turnpair(localx, localy, rotpo(e));
}

void drawlocalaxes(int e, int nview) {
    const int elnn = nodesoftype(elems(e, 0));
    if (elnn < 2) return;
    localaxes(e);
    turnedplateaxes(e);
    if (axesonly) return;
    prepareview(nview);
    const float scale = viewscale(nview);
    const float origin[3] = {float(axisorigin[0] * scale), float(axisorigin[1] * scale),
                             float(axisorigin[2] * scale)};
    const bool erase = drawcolor == backcolor;
    drawstroke(origin, localx, symbollength(), nview, erase ? backcolor : rgb(255, 0, 0));
    drawstroke(origin, localy, symbollength(), nview, erase ? backcolor : rgb(0, 255, 0));
    drawstroke(origin, localz, symbollength(), nview, erase ? backcolor : rgb(0, 0, 255));
}

void drawendrelease(int e, int end, int nview) {
    if (nodesoftype(elems(e, 0)) != 2) return;
    bool any = false;
    for (int dof = 1; dof <= 6; ++dof) any = any || endrelease(e, end, dof) == 1;
    if (!any) return;
    localaxes(e);
    prepareview(nview);
    const double part = end == 1 ? 0.1 : 0.9;  // of the element's length, from its first node
    const long n1 = long(elems(e, 1)), n2 = long(elems(e, 2));
    const float scale = viewscale(nview);
    float at[3];
    for (int k = 0; k < 3; ++k)
        at[k] = float(scale * (nodes(0, n1, k) + part * (nodes(0, n2, k) - nodes(0, n1, k))));
    curx = at[0];
    cury = at[1];
    curz = at[2];
    projectpoint(nview);
    if (!isinslab()) return;
    const double* const axes[] = {localx, localy, localz};
    for (int dof = 1; dof <= 6; ++dof) {
        if (endrelease(e, end, dof) != 1) continue;
        const colour c = dof <= 3 ? concolor : rotcolor;
        drawstroke(at, axes[(dof - 1) % 3], symbollength(), nview,
                   drawcolor == backcolor ? backcolor : c);
    }
}
