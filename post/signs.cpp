// SPDX-License-Identifier: GPL-3.0-or-later
// Arrows on a piece of a member.
#include "post/signs.h"

#include <algorithm>
#include <cmath>

#include "core/session.h"
#include "core/views.h"
#include "view/surface.h"

namespace {
// One plane of a member: a piece of it with arrows at its face. Centimetres.
struct signpicture {
    surface& s;
    double x, y, size;  // middle of the face, length of an arrow
    colour ink;

    void head(double tipx, double tipy, double dx, double dy) const {
        const double length = 0.3 * size, half = 0.15 * size;
        const point2 tip[] = {{tipx, tipy},
                              {tipx - length * dx - half * dy, tipy - length * dy + half * dx},
                              {tipx - length * dx + half * dy, tipy - length * dy - half * dx}};
        s.fillsolid = true;
        s.fillcolor = ink;
        s.polygon(tip, 3, ink);
        s.fillsolid = false;
    }
    void label(double atx, double aty, const char* text) const {
        s.moveto(atx, aty);
        s.text(text);
    }
    void arrow(double fromx, double fromy, double dx, double dy) const {
        s.line(fromx, fromy, fromx + size * dx, fromy + size * dy, ink);
        head(fromx + size * dx, fromy + size * dy, dx, dy);
    }
    // Half a turn about the face, to the right of it.
    void turn(bool counterclockwise) const {
        const int pieces = 12;
        const double radius = 0.75 * size, middle = x + 0.15 * size;
        double bx = 0, by = 0;
        for (int i = 0; i <= pieces; ++i) {
            const double angle = pi * (double(i) / pieces - 0.5);  // from below upwards
            const double ax = middle + radius * std::cos(angle),
                         ay = y - (counterclockwise ? 1 : -1) * radius * std::sin(angle);
            if (i > 0) s.line(bx, by, ax, ay, ink);
            bx = ax;
            by = ay;
        }
        head(bx - 0.1 * size, by, -1, 0);
    }
};
}  // namespace

struct planesigns {
    const char *up, *shear, *moment;
    bool counterclockwise;
};
// e3 up and e1 to the right, e2 points into the paper: about it a turn is clockwise.
static const planesigns planesof[] = {{"e2", "Vy", "Mz", true}, {"e3", "Vz", "My", false}};

void drawsigns(surface& s, double left, double top, double width, double height) {
    const colour ink = elemlabelcolor;
    const double line = s.textheight(), part = height / 2;
    const double size = std::min(0.16 * width, 0.22 * (part - line));
    if (size <= 0.05) return;
    for (int p = 0; p < 2; ++p) {
        const planesigns& plane = planesof[p];
        const double x = left + 0.42 * width, y = top + p * part + part / 2;
        const signpicture picture{s, x, y, size, ink};
        const double half = 0.3 * size;
        s.line(left + 0.15 * width, y - half, x, y - half, ink);
        s.line(left + 0.15 * width, y + half, x, y + half, ink);
        s.line(x, y - half, x, y + half, ink);
        // The member's own axes at its first end, the forces on the face at the second.
        const double axes = left + 0.2 * size;  // a head is half as wide
        picture.arrow(axes, y + 1.6 * size, 1, 0);
        picture.arrow(axes, y + 1.6 * size, 0, -1);
        picture.label(axes + 1.1 * size, y + 1.6 * size - line / 2, "e1");
        picture.label(axes, y + 0.5 * size - line, plane.up);
        picture.turn(plane.counterclockwise);
        picture.label(x + size, y - 0.9 * size - line / 2, plane.moment);
        picture.arrow(x, y - half, 0, -1);
        picture.label(x - s.textwidth(plane.shear) / 2, y - half - size - line, plane.shear);
        picture.arrow(x + 1.1 * size, y, 1, 0);
        picture.label(x + 2.2 * size, y - line / 2, p == 0 ? "N" : "N, T");
    }
}
