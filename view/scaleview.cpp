// SPDX-License-Identifier: GPL-3.0-or-later
// The registers of the projection, and nodes as they are drawn.
#include "view/scaleview.h"

#include "core/model.h"

camera viewcamera;
double rotw, rotu, rotv, persu, persv;
int undeformed = 1;
float shapepart = 1;

void prepareview(int nview) {
    viewcamera = cameraof(nview);
}

void projectaxis(int nview) {
    projectpoint(nview);
}

void unprojectpoint(int nview) {
    const backpoint p = unproject(cameraof(nview), {scrx, scry});
    curx = p.scaled.x;
    cury = p.scaled.y;
    curz = p.scaled.z;
    modelx = p.x;
    modely = p.y;
    modelz = p.z;
}

void unprojectat(int nview, double x, double y) {
    persu = (x - vieww / 2) / scalex;
    persv = (viewh / 2 - y) / scaley;
    scrx = x;
    scry = y;
    unprojectpoint(nview);
}

void setpoint(int nview, double x, double y, double z) {
    const float scale = viewscale(nview);
    curx = float(scale * x);
    cury = float(scale * y);
    curz = float(scale * z);
}

void projectplace(int nview, double x, double y, double z) {
    setpoint(nview, x, y, z);
    projectpoint(nview);
}

keptpoint::keptpoint()
    : point{curx, cury, curz}, model{modelx, modely, modelz}, screen{scrx, scry, persu, persv} {}

keptpoint::~keptpoint() {
    curx = point[0];
    cury = point[1];
    curz = point[2];
    modelx = model[0];
    modely = model[1];
    modelz = model[2];
    scrx = screen[0];
    scry = screen[1];
    persu = screen[2];
    persv = screen[3];
}

float shapefactor(int nview) {
    return float(1 - undeformed) * dispscale(nview) * shapepart;
}

scaledpoint drawnplace(int n, int nview) {
    const float scale = viewscale(nview);
    const auto at = nodes.row(0, n);
    if (undeformed == 1) return {scale * at[0], scale * at[1], scale * at[2]};
    const float f = shapefactor(nview);
    const auto d = nodes.row(1, n);
    return {scale * (at[0] + f * d[0]), scale * (at[1] + f * d[1]), scale * (at[2] + f * d[2])};
}

void setnode(int n, int nview) {
    const scaledpoint p = drawnplace(n, nview);
    curx = p.x;
    cury = p.y;
    curz = p.z;
}

void setdispscale(int nview) {
    const double least = 1e-30;
    dispscale(nview) = viewscale(nview) >= least && maxdisp >= least
                           ? float(unitveclen / maxdisp / viewscale(nview))
                           : 1.0f;
}
