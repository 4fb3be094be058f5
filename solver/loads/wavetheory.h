// SPDX-License-Identifier: GPL-3.0-or-later
// The linear (Airy) wave on water of constant depth, in metres and seconds. Still water is z = 0,
// the bed z = -depth. Flow under the crest follows the surface by Wheeler's stretching.
#pragma once

#include "solver/base/matrix.h"

// k of omega^2 = g k tanh(k depth), to the last digits. 1/m
double wavenumber(double omega, double depth, double gravity);

struct linearwave {
    double height = 0, depth = 0;  // m, crest above trough
    double omega = 0, number = 0;  // 1/s, 1/m
    double phase = 0;              // radians taken off k s
    vec3 along = vec3(1, 0, 0);    // unit vector of travel, horizontal

    double length() const;                 // m, crest to crest
    double surface(const vec3& at) const;  // height of the water above z = 0
    // Velocity and acceleration of the water at a place below the surface, m/s and m/s^2.
    void flow(const vec3& at, vec3& velocity, vec3& acceleration) const;
    // Highest wave that does not break on this depth: Miche's limit.
    double breaking() const;
};

// direction: degrees from x to y; shift: part of a period by which the crest has passed the origin.
linearwave makewave(double height, double period, double direction, double shift, double depth,
                    double gravity);
