// SPDX-License-Identifier: GPL-3.0-or-later
// The projection of a view as a plain value: from model space to the surface and back. Nothing here
// is kept; the registers that the drawing shares are in view/scaleview.h.
//
// What is held as Single is rounded to Single here and nowhere else: the scaled point, the eye, the
// differences, the sum of aw and dist and the depth with perspective. All else is Double.
#pragma once

struct point2 {
    double x, y;
};

// A model point times the view's scale.
struct scaledpoint {
    float x, y, z;
};

struct camera {
    // cos and sin of the horizontal angle h and the vertical angle v, and their products
    double cosh, sinhcosv, sinv, sinh, coshsinv, sinhsinv, cosv, coshcosv;
    float scale;
    float eyex, eyey, eyez;  // scale times the view point, each product a Single
    float eyesum;            // aw + dist as a Single
    float half;              // half the slab in scaled units
    float aw;                // depth of the image plane, scaled units
    double dist;             // of the eye, scaled units
    double midx, midy;       // of the surface, centimetres
    double scalex, scaley;   // factors of the layout
};
camera cameraof(int nview);

// A point turned into the axes of the view: depth, to the right and up, without perspective.
struct turnedpoint {
    double w, u, v;
};
struct placedpoint {
    point2 at;           // centimetres on the surface
    float depth;         // with perspective; larger is nearer to the eye
    double u, v;         // with perspective
    turnedpoint turned;  // without
};

// The depth takes cos h alone in its first term and not cos h cos v; pictures at ordinary eye
// distances do not show it, and stored views rely on it.
inline turnedpoint turn(const camera& c, const scaledpoint& p) {
    const double dx = p.x - c.eyex, dy = p.y - c.eyey, dz = p.z - c.eyez;
    return {c.cosh * dx + c.sinhcosv * dy + c.sinv * dz, -c.sinh * dx + c.cosh * dy,
            -c.coshsinv * dx - c.sinhsinv * dy + c.cosv * dz};
}

// Centimetres on the surface of a place on the view's plane.
inline point2 surfaceplace(const camera& c, double u, double v) {
    return {c.midx + c.scalex * u, c.midy - c.scaley * v};
}

// A point at the eye lies in the middle of the surface.
inline placedpoint project(const camera& c, const scaledpoint& p) {
    const turnedpoint t = turn(c, p);
    const double f = double(c.eyesum) == t.w ? 0 : c.dist / (double(c.eyesum) - t.w);
    const double u = f * t.u, v = f * t.v;
    return {surfaceplace(c, u, v), float(f * t.w), u, v, t};
}

// From a place on the surface to the point on the image plane through the view point.
struct backpoint {
    scaledpoint scaled;
    double x, y, z;  // model units
};
backpoint unproject(const camera& c, const point2& at);

// Is this depth inside the slab?
inline bool isinslab(const camera& c, double w) {
    const double off = double(c.aw) - w;
    return double(c.half) > (off < 0 ? -off : off);
}
// Where the line from near to far meets the slab's bound, taken without perspective. far lies
// outside the slab and at another depth than near.
point2 clipdepth(const camera& c, const turnedpoint& near, const turnedpoint& far);
