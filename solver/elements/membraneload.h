// SPDX-License-Identifier: GPL-3.0-or-later
// How the membrane of a curved shell holds a load that the bending of a flat element would take.
#pragma once

#include "solver/elements/meanplane.h"

// The part of a load that the cubic deflection meets, 1 on a flat element.
double cubicpart(const element& e, const flatshape& s);

// What a load meets on a curved element in place of the cubic deflection: these weights of the
// corners, whatever its place, and the straight deflection times the part that they leave.
struct membraneload {
    halfrow weight;
    double part;
};
membraneload loadofmembrane(const element& e, const flatshape& s);

// Whether the surface turns so much for the thickness that a load is held by the membrane.
bool iscurved(const element& e);
// Forces on the corners of a curved shell that would have to hold its membrane in balance: a
// stress, force a length, model axes, less the part that the surface holds a pressure with.
void balancemembrane(const element& e, const mat3& membrane, elvector& f);
