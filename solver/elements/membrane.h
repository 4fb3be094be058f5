// SPDX-License-Identifier: GPL-3.0-or-later
// Membranes without rotations: MEMB3, MEMB4 and the shear panel SHEAR4.
#pragma once

#include "solver/elements/element.h"

void checkmembrane(const element& e);
void stiffenmemb3(const element& e, elmatrix& k);
void stressmemb3(const element& e, elmatrix& s);
void stiffenmemb4(const element& e, elmatrix& k);
void stressmemb4(const element& e, elmatrix& s);

void stiffenshear(const element& e, elmatrix& k);
void stressshear(const element& e, elmatrix& s);
