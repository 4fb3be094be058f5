// SPDX-License-Identifier: GPL-3.0-or-later
// Projection from model coordinates to a view's surface and back, depth clipping, autoscale.
//
// prepareview sets the registers of one view; after it projectpoint runs once a point. Points
// enter in scaled coordinates curx, cury, curz (model coordinate times viewscale, as Singles) and
// leave in scrx, scry (centimetres) and perspw (depth, larger is nearer to the eye).
#pragma once

#include "core/views.h"

// Registers of the view in work.
struct viewregisters {
    double cosh, sinhcosv, sinv, sinh, coshsinv, sinhsinv, cosv, coshcosv;
    float eyex, eyey, eyez;  // viewscale times the view point, each product a Single
    float eyesum;            // viewaw + viewdist as a Single
    float half;              // half the slab in scaled units
    float aw;
    double dist, midx, midy;
};
extern viewregisters viewreg;
extern double rotw, rotu, rotv;  // depth, horizontal, vertical of the last point, no perspective
extern double persu, persv;      // the same with perspective

void prepareview(int nview);

// Sets scrx, scry, perspw from curx, cury, curz. The depth takes cos h alone in its first term and
// not cos h cos v; pictures at ordinary eye distances do not show it, and stored views rely on it.
inline void projectpoint(int) {
    const viewregisters& r = viewreg;
    const double dx = curx - r.eyex, dy = cury - r.eyey, dz = curz - r.eyez;
    rotw = r.cosh * dx + r.sinhcosv * dy + r.sinv * dz;
    rotu = -r.sinh * dx + r.cosh * dy;
    rotv = -r.coshsinv * dx - r.sinhsinv * dy + r.cosv * dz;
    const double f = double(r.eyesum) == rotw ? 0 : r.dist / (double(r.eyesum) - rotw);
    persu = f * rotu;
    persv = f * rotv;
    perspw = float(f * rotw);
    scrx = r.midx + scalex * persu;
    scry = r.midy - scaley * persv;
}
// The same sequence; it serves the axis triad alone.
void projectaxis(int nview);

// From scrx, scry to the model point on the image plane through the view point: curx, cury, curz
// and modelx, modely, modelz. Works from the view's angles, prepareview need not have run.
void unprojectpoint(int nview);

// Is the point last projected inside the depth slab of the prepared view?
inline bool isinslab() {
    const double off = double(viewreg.aw) - rotw;
    return double(viewreg.half) > (off < 0 ? -off : off);
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

extern int nodeinslab;  // 1 when the end of a line lies inside the slab
// Rotated values of the near end of a line.
struct lineend {
    double w, u, v;
};
// For the far end of a line, the point last projected: inside the slab it raises nodeinslab and
// changes nothing; else it moves scrx, scry to where the line from near meets the slab's bound,
// taken without perspective.
void clipdepth(int nview, const lineend& near);

// Fits elements, graphic elements and, while they are drawn, the buffers of one view into its
// surface, by the largest extent whatever the angles. Nothing to fit leaves a scale next to 0.
void autoscale(int nview);
// What the user's fit does: autoscale; where the view is fitted already, the picture of the model
// as it is projected fills the view; where there is nothing, a square of ten units does.
void fit(int nview);

// Position of a node as drawn, scaled: at its place or displaced while undeformed is 0.
extern int undeformed;  // 1 while the undeformed model is drawn
void setnode(int n, int nview);

// dispscale of a view from the largest displacement: it measures unitveclen on the screen.
void setdispscale(int nview);
