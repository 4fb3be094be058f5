// SPDX-License-Identifier: GPL-3.0-or-later
// Eigenmodes of the undamped free vibration, K x = omega^2 M x, lowest first.
#pragma once

#include <vector>

#include "solver/equations/solve.h"

struct modeset {
    std::vector<double> value;        // omega^2, 1/s^2
    std::vector<double> shape;        // d.dofs() numbers a mode; largest translation 1
    std::vector<vec3> effectivemass;  // along x y z, mass units of the model
    vec3 totalmass = vec3::Zero();    // what the modes together could have, supports included
    const double* of(const dofmap& d, int mode) const {  // 1..count()
        return shape.data() + std::size_t(mode - 1) * d.equation.size();
    }
    int count() const { return int(value.size()); }
};

// elements: the mass of all elements takes part, else that of MASS elements alone. Modes of
// multiple frequencies come as often as they are; motions without stiffness have the value 0.
// Refuses a model without mass, and a motion that has neither stiffness nor mass.
modeset findmodes(const model& m, const settings& s, const equations& q, bool elements,
                  runlog& log);
