// SPDX-License-Identifier: GPL-3.0-or-later
// The linear wave: Dean and Dalrymple, Water Wave Mechanics for Engineers and Scientists, chapters
// 3 and 4. Stretching: Wheeler, Method for calculating forces produced by irregular waves, J.
// Petroleum Technology, March 1970.
#include "solver/loads/wavetheory.h"

#include <cmath>

double wavenumber(double omega, double depth, double gravity) {
    // x tanh x = a for x = k depth. Newton from above, Eckart's value to begin with; the function
    // is convex there, so the steps never leave the root's side.
    const double a = omega * omega * depth / gravity;
    double x = a / std::sqrt(std::tanh(a));
    const int rounds = 50;
    for (int round = 0; round < rounds; ++round) {
        const double t = std::tanh(x);
        const double step = (x * t - a) / (t + x * (1 - t * t));
        if (!(std::fabs(step) > 1e-16 * x)) break;
        x -= step;
    }
    return x / depth;
}

linearwave makewave(double height, double period, double direction, double shift, double depth,
                    double gravity) {
    linearwave w;
    w.height = height;
    w.depth = depth;
    w.omega = 2 * M_PI / period;
    w.number = wavenumber(w.omega, depth, gravity);
    w.phase = 2 * M_PI * shift;
    const double angle = direction * M_PI / 180;
    w.along = vec3(std::cos(angle), std::sin(angle), 0);
    return w;
}

double linearwave::length() const {
    return 2 * M_PI / number;
}

double linearwave::surface(const vec3& at) const {
    return height / 2 * std::cos(number * along.dot(at) - phase);
}

void linearwave::flow(const vec3& at, vec3& velocity, vec3& acceleration) const {
    const double angle = number * along.dot(at) - phase;
    const double c = std::cos(angle), s = std::sin(angle);
    // Height above the bed that stands for this one: the column is pressed to the still depth.
    const double up = depth * (depth + at.z()) / (depth + height / 2 * c);
    // cosh(k up) / sinh(k depth) and sinh over sinh, by exponents that never overflow.
    const double fade = std::exp(number * (up - depth)), mirror = std::exp(-2 * number * up);
    const double bed = 1 - std::exp(-2 * number * depth);
    const double even = fade * (1 + mirror) / bed, odd = fade * (1 - mirror) / bed;
    const double speed = height / 2 * omega;
    velocity = speed * even * c * along;
    acceleration = speed * omega * even * s * along;
    velocity.z() = speed * odd * s;
    acceleration.z() = -speed * omega * odd * c;
}

double linearwave::breaking() const {
    return 0.142 * length() * std::tanh(number * depth);
}
