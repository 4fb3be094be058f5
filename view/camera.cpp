// SPDX-License-Identifier: GPL-3.0-or-later
// The camera of a view, its inverse and the depth slab.
#include "view/camera.h"

#include <cmath>

#include "core/views.h"

camera cameraof(int nview) {
    camera c{};
    const double h = viewhor(nview), v = viewvert(nview);
    c.cosh = std::cos(h);
    c.sinh = std::sin(h);
    c.cosv = std::cos(v);
    c.sinv = std::sin(v);
    c.sinhcosv = c.sinh * c.cosv;
    c.coshsinv = c.cosh * c.sinv;
    c.sinhsinv = c.sinh * c.sinv;
    c.coshcosv = c.cosh * c.cosv;
    c.scale = viewscale(nview);
    c.eyex = c.scale * viewptx(nview);
    c.eyey = c.scale * viewpty(nview);
    c.eyez = c.scale * viewptz(nview);
    c.eyesum = viewaw(nview) + viewdist(nview);
    c.half = c.scale * viewdepth(nview) / 2;
    c.aw = viewaw(nview);
    c.dist = viewdist(nview);
    c.midx = vieww / 2;
    c.midy = viewh / 2;
    c.scalex = scalex;
    c.scaley = scaley;
    return c;
}

// Of an angle that is a Single: a quarter turn is off by up to 1.2e-7. Points pressed in a view
// along an axis shall lie in its plane, not beside it.
static double exactquarter(double sineorcosine) {
    const double rounding = 2e-7;
    return std::fabs(sineorcosine) < rounding ? 0 : sineorcosine;
}

backpoint unproject(const camera& c, const point2& at) {
    const double aw = c.aw, f0 = aw + c.dist == 0 ? 0 : c.dist / (aw + c.dist);
    const double w = f0 == 0 ? 0 : aw / f0;
    const double u = (at.x - c.midx) / c.scalex;
    const double p = (c.midy - at.y) / c.scaley;
    const double cosh = exactquarter(c.cosh), sinh = exactquarter(c.sinh);
    const double cosv = exactquarter(c.cosv), sinv = exactquarter(c.sinv);
    const double x = cosh * cosv * w - sinh * u - sinv * cosh * p;
    const double y = sinh * cosv * w + cosh * u - sinv * sinh * p;
    const double z = sinv * w + cosv * p;
    const scaledpoint s{float(x + double(c.eyex)), float(y + double(c.eyey)),
                        float(z + double(c.eyez))};
    const double scale = c.scale;
    return {s, s.x / scale, s.y / scale, s.z / scale};
}

point2 clipdepth(const camera& c, const turnedpoint& near, const turnedpoint& far) {
    const double half = c.half, a = c.aw;
    const auto meeting = [&](double bound) { return (a + bound - near.w) / (far.w - near.w); };
    const double bound = half < a - near.w ? half : -half;
    double t = meeting(bound);
    // A line that leaves the slab towards the eye meets the other bound.
    if (t < 0 || t > 1) t = meeting(-bound);
    return surfaceplace(c, near.u + (far.u - near.u) * t, near.v + (far.v - near.v) * t);
}
