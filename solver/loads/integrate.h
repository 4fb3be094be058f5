// SPDX-License-Identifier: GPL-3.0-or-later
// Integrals of loads over parts of elements, to nodal forces.
#pragma once

#include <cmath>
#include <functional>

#include "solver/elements/kinds.h"

// Adds a force a length that varies with x (0 at the first node, 1 at the second) from x = from to
// x = to. Intervals are halved until the nodal forces change by less than 1e-6 of the load.
using linedensity = std::function<vec3(double x)>;
// Takes a density that holds from x = from to x = to.
using linesink = std::function<void(double from, double to, const linedensity& load)>;
void integrateline(const element& e, double from, double to, const linedensity& load, elvector& f);

// Adds a force an area, given by place and unit normal, over the part of a plate whose z lies
// between the levels; false where there is none.
using platedensity = std::function<vec3(const vec3& at, const vec3& normal)>;
bool integrateplate(const element& e, double lower, double upper, const platedensity& load,
                    elvector& f);

// The part from..to of a line from height z0 to z1 that lies between the levels; false: none.
bool cutlevels(double z0, double z1, double lower, double upper, double& from, double& to);

// The part of a..b where the function is positive, when it changes its sign there at most once;
// false: none.
template <typename Function>
bool cutpositive(Function f, double& a, double& b) {
    const bool first = f(a) > 0, second = f(b) > 0;
    if (first == second) return first;
    double in = first ? a : b, out = first ? b : a;
    const int halvings = 60;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (in + out) / 2;
        (f(middle) > 0 ? in : out) = middle;
    }
    (first ? b : a) = in;
    return b > a;
}
