// SPDX-License-Identifier: GPL-3.0-or-later
// RIGID: nodes joined by rigid links move as one body, whose few base values take the place of the
// nodes' own degrees of freedom. No penalty stiffness, so no loss of digits.
#pragma once

#include "solver/dofs/dofmap.h"

// Finds the bodies, ties their nodes' owners to the leader and makes a space of each, with the
// constraints of all its nodes in it. Refuses constraints that contradict each other.
void makebodies(const model& m, dofmap& d, runlog& log);

// Displacement of a body's node from the body's base values (rows by place of the degree of
// freedom): translations and rotations of the leader, DX DY RZ in 2-D. Without rotations in the
// analysis the body still has its own.
mat6 bodyarm(const model& m, const dofmap& d, const rigidbody& body, int node);

// Support forces of a body from the forces that act on its nodes and are not balanced (by degree of
// freedom, like the loads): the forces at its constrained degrees of freedom that do balance them.
// Each goes to its place in reaction.
void bodyreactions(const model& m, const dofmap& d, const rigidbody& body, const double* unbalanced,
                   double* reaction);

// Length by which a body's rotations compare with its translations.
double bodylength(const model& m, const rigidbody& body);

// From the unit vectors, in turn the one that differs most from all so far: columns that complete
// the orthonormal columns of given to a basis. Axes stay axes.
mat6 complementof(const mat6& given, int count, int base);
