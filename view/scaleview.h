// SPDX-License-Identifier: GPL-3.0-or-later
// The registers of the projection, a thin face on view/camera.h, and the factors by which
// displacements and loads are drawn.
//
// prepareview sets the registers of one view; after it projectpoint runs once a point. Points
// enter in scaled coordinates curx, cury, curz (model coordinate times viewscale, as Singles) and
// leave in scrx, scry (centimetres) and perspw (depth, larger is nearer to the eye).
#pragma once

#include "core/views.h"
#include "view/camera.h"

extern camera viewcamera;        // of the view in work
extern double rotw, rotu, rotv;  // depth, horizontal, vertical of the last point, no perspective
extern double persu, persv;      // the same with perspective

void prepareview(int nview);

// Sets scrx, scry, perspw from curx, cury, curz.
inline void projectpoint(int) {
    const placedpoint p = project(viewcamera, {curx, cury, curz});
    rotw = p.turned.w;
    rotu = p.turned.u;
    rotv = p.turned.v;
    persu = p.u;
    persv = p.v;
    perspw = p.depth;
    scrx = p.at.x;
    scry = p.at.y;
}
// The same sequence; it serves the axis triad alone.
void projectaxis(int nview);

// From scrx, scry to the model point on the image plane through the view point: curx, cury, curz
// and modelx, modely, modelz. Works from the view's angles, prepareview need not have run.
void unprojectpoint(int nview);

void unprojectat(int nview, double x, double y);  // a place in a view becomes the point in work
void setpoint(int nview, double x, double y, double z);  // a model point, scaled: curx, cury, curz
void projectplace(int nview, double x, double y, double z);  // a model point, projected

// Is the point last projected inside the depth slab of the prepared view?
inline bool isinslab() {
    return isinslab(viewcamera, rotw);
}

// The point in work, where it lies on the surface and its model point belong to the mouse and to
// commands; what needs the registers for itself holds one of these meanwhile.
class keptpoint {
  public:
    keptpoint();
    ~keptpoint();
    keptpoint(const keptpoint&) = delete;
    keptpoint& operator=(const keptpoint&) = delete;

  private:
    float point[3];
    double model[3], screen[4];
};

// Position of a node as drawn, scaled: at its place or displaced while undeformed is 0.
extern int undeformed;         // 1 while the undeformed model is drawn
extern float shapepart;        // of a shape that is drawn: 1, and while it moves -1..1
float shapefactor(int nview);  // factor of the displacements, 0 for the undeformed model
scaledpoint drawnplace(int n, int nview);
void setnode(int n, int nview);  // into curx, cury, curz

// dispscale of a view from the largest displacement: it measures unitveclen on the screen.
void setdispscale(int nview);
