// SPDX-License-Identifier: GPL-3.0-or-later
// Displacements of all cases and the forces that elements answer them with.
#pragma once

#include "solver/dofs/dofs.h"

// d.dofs() numbers a case, one case behind the other.
struct displacements {
    std::vector<double> u;
    std::vector<double> rest;  // what u leaves off by rounding; empty where that does not matter
    int cases = 0;
    const double* of(const dofmap& d, int lc) const {
        return u.data() + std::size_t(lc - 1) * d.equation.size();
    }
    double* of(const dofmap& d, int lc) {
        return u.data() + std::size_t(lc - 1) * d.equation.size();
    }
};

// Nodal displacements of an element in all cases, by columns.
using elcases = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic>;
void gather(const dofmap& d, const elementdofs& dofs, const displacements& u, elcases& out);

// Nodal forces of one element (model axes), a column a case. Their sums vanish to the rounding of
// the forces, not of the stiffness.
void elementforces(const model& m, const settings& s, const dofmap& d, const displacements& u,
                   int number, elcases& f);

// Twice the energy of the first case in one element, and by how much rounding may miss it.
struct strainenergy {
    double energy = 0, rounding = 0;
};
strainenergy elementenergy(const model& m, const settings& s, const dofmap& d,
                           const displacements& u, int number);

// The elements' nodal forces, stiffness times displacements: added to force (like u), which is 0.
// elements: those of this process; the forces are those of all.
void addforces(const model& m, const settings& s, const dofmap& d, const displacements& u,
               const std::vector<int>& elements, std::vector<double>& force);

// Elements of this process with a stiffness of their own.
std::vector<int> stiffelements(const model& m);
