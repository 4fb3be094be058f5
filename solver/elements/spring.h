// SPDX-License-Identifier: GPL-3.0-or-later
// Springs and masses, whose numbers the element group gives outright, in model axes.
#pragma once

#include "solver/elements/element.h"

// SPRING-T, SPRING-R, SPRING: from the node to ground by the translations, the rotations, the whole
// of the group's matrix. SPRING2: the same matrix between two nodes.
void checkspring(const element& e);
void stiffenspring(const element& e, elmatrix& k);

// MASS: the group's specific mass is the mass, I xx, I yy, I zz are its inertias about the axes.
void checkmass(const element& e);
void masspoint(const element& e, elmatrix& m);
