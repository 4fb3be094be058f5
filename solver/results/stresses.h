// SPDX-License-Identifier: GPL-3.0-or-later
// What the elements feel once the displacements are known: reactions, end forces of lines, stresses
// of plates.
#pragma once

#include <array>
#include <vector>

#include "solver/equations/forces.h"
#include "solver/loads/loads.h"

// Forces at the constrained degrees of freedom and of springs to ground, and the loads they answer,
// summed.
struct reactionset {
    std::vector<double> force;   // like the displacements; 0 where nothing supports
    std::vector<vec6> load;      // (1..cases): sum of applied forces DX..RZ; moments about the
    std::vector<vec6> reaction;  // origin of the model
    std::vector<vec6> least;     // below which these sums are what rounding left
};
// applied: the loads, numbered like the displacements.
reactionset findreactions(const model& m, const settings& s, const dofmap& d,
                          const displacements& u, const std::vector<double>& applied, runlog& log);

// Line elements of this process: by case, for each, the forces DX..RZ on both its ends, local axes,
// less what stands for the load between them.
const int endvalues = 12;
struct lineends {
    std::vector<int> elements;
    std::vector<double> value;  // [case][element][end][value]
    int cases = 0;
    const double* of(int lc, std::size_t line) const {
        return value.data() + (std::size_t(lc - 1) * elements.size() + line) * endvalues;
    }
};
lineends findlineends(const model& m, const settings& s, const dofmap& d, const displacements& u,
                      runlog& log);

// At an end axial force, moment about e2, moment about e3, torsion, as they act on the face that
// looks along +e1, over area and section moduli.
const int linevalues = 4;
using linestress = std::array<double, 2 * linevalues>;
linestress linestressof(const element& e, const double* ends);

// Plates that this process holds, its own and those that meet them: at each corner membrane x, y,
// xy and bending x, y, xy in stress axes.
const int platevalues = 6;
struct platestresses {
    std::vector<int> elements;
    std::vector<int> first;     // of each element's corners among all corners; one more at the end
    std::vector<double> value;  // [case][corner][value]
    int corners = 0;
    const double* of(int lc, int corner) const {
        return value.data() +
               (std::size_t(lc - 1) * std::size_t(corners) + std::size_t(corner)) * platevalues;
    }
};
platestresses findplatestresses(const model& m, const settings& s, const dofmap& d,
                                const displacements& u, runlog& log);
