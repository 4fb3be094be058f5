// SPDX-License-Identifier: GPL-3.0-or-later
// Bars and beams: TRUSS, BEAM, PIPE. Degrees of freedom at each end u1 u2 u3 (and r1 r2 r3).
#pragma once

#include "solver/element.h"

void checktruss(const element& e);
void stiffentruss(const element& e, elmatrix& k);
void masstruss(const element& e, elmatrix& m);
void spreadtruss(const element& e, placedforces forces, elvector& f);

void checkbeam(const element& e);
void stiffenbeam(const element& e, elmatrix& k);
void massbeam(const element& e, elmatrix& m);
void spreadbeam(const element& e, placedforces forces, elvector& f);
// Deflections along e2 and e3 that the twelve end values (local axes) alone give, at both ends and
// between equal intervals.
void deflectbeam(const element& e, const Eigen::Matrix<double, 12, 1>& ends, int intervals,
                 vec2* deflections);
