// SPDX-License-Identifier: GPL-3.0-or-later
// PLATE3, PLATE4 (bending alone) and SHELL3, SHELL4 (bending and membrane with drilling rotations),
// thick or thin. Degrees of freedom u1 u2 u3 r1 r2 r3 a corner.
#pragma once

#include "solver/elements/element.h"

void checkshell(const element& e);
void stiffenplate(const element& e, elmatrix& k);
void stiffenshell(const element& e, elmatrix& k);
// Consistent mass with the deflection of the bent plate and the rotary inertia of its thickness;
// no mass turns about the normal.
void massshell(const element& e, elmatrix& m);
void spreadshell(const element& e, placedforces forces, elvector& f);
void stressplate(const element& e, elmatrix& s);
void stressshell(const element& e, elmatrix& s);
