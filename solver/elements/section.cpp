// SPDX-License-Identifier: GPL-3.0-or-later
// Cross sections. A PIPE is a circular tube told by its area and inertia.
#include "solver/elements/section.h"

#include <algorithm>
#include <cmath>

// Tube with A = pi/4 (D^2 - d^2) and I = pi/64 (D^4 - d^4), hence D^2 + d^2 = 16 I/A.
static void completetube(linesection& s) {
    if (s.i2 == 0) s.i2 = s.i3;
    if (s.i3 == 0) s.i3 = s.i2;
    if (s.torsion == 0) s.torsion = s.i2 + s.i3;
    const double mean = (s.i2 + s.i3) / 2;
    const double diameter = std::sqrt(8 * mean / s.area + 2 * s.area / M_PI);
    s.outer2 = s.outer3 = diameter;
    s.enclosed = M_PI / 4 * diameter * diameter;
    s.tube = true;
    if (s.w2 == 0) s.w2 = 2 * s.i2 / diameter;
    if (s.w3 == 0) s.w3 = 2 * s.i3 / diameter;
    if (s.wt == 0) s.wt = 2 * s.torsion / diameter;
}

linesection sectionof(const element& e) {
    linesection s;
    s.area = e.field(fieldthickness);
    s.i2 = e.field(fieldixx);
    s.i3 = e.field(fieldiyy);
    s.torsion = e.field(fieldizz);
    s.w2 = e.field(fieldwxx);
    s.w3 = e.field(fieldwyy);
    s.wt = e.field(fieldwzz);
    s.enclosed = s.area;
    if (e.type == typepipe) {
        completetube(s);
        return s;
    }
    // Bending about e2 stretches the fibres at the ends of e3, so I xx and W xx tell the height
    // along e3. Where they are missing the section counts as a round bar.
    const double round = std::sqrt(4 * s.area / M_PI);
    const bool height = s.i2 > 0 && s.w2 > 0, width = s.i3 > 0 && s.w3 > 0;
    s.outer3 = height ? 2 * s.i2 / s.w2 : round;
    s.outer2 = width ? 2 * s.i3 / s.w3 : round;
    s.outlined = height && width;
    return s;
}
