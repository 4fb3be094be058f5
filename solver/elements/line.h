// SPDX-License-Identifier: GPL-3.0-or-later
// Bars and beams: TRUSS, BEAM, PIPE. Degrees of freedom at each end u1 u2 u3 (and r1 r2 r3).
#pragma once

#include "solver/elements/section.h"

void checktruss(const element& e);
void stiffentruss(const element& e, elmatrix& k);
void masstruss(const element& e, elmatrix& m);
void spreadtruss(const element& e, placedforces forces, elvector& f);

// Of a truss too, which has no use for its stiffness in bending.
struct beamdata {
    linesection section;
    double length, modulus, shearmodulus;
    double shear2, shear3;  // G As against bending about e2 and e3; 0: stiff
    double phi2, phi3;      // 12 E I / (G As L^2) of the same
    mat3 axes;              // local
    mat3 forces, moments;   // times a load on the beam: what its own two planes carry of it
};
beamdata beamdataof(const element& e);
void checkbeam(const element& e);
void stiffenbeam(const element& e, elmatrix& k);
void massbeam(const element& e, elmatrix& m);
void spreadbeam(const element& e, placedforces forces, elvector& f);
// Values DX..RZ of both ends in local axes, 0 where the element has none.
using lineendvalues = Eigen::Matrix<double, 12, 1>;
// nodal: the element's own, model axes, nodedofs (3 or 6) a node.
// forces, moments: what turns them, for displacements the local axes.
inline lineendvalues tolocalends(const mat3& forces, const mat3& moments, const double* nodal,
                                 int nodedofs) {
    lineendvalues local = lineendvalues::Zero();
    for (int end = 0; end < 2; ++end)
        for (int half = 0; half < nodedofs / 3; ++half)
            local.segment<3>(6 * end + 3 * half) =
                (half == 0 ? forces : moments) *
                Eigen::Map<const vec3>(nodal + nodedofs * end + 3 * half);
    return local;
}
// Deflections along e2 and e3 that the twelve end values (local axes) alone give, at both ends and
// between equal intervals.
void deflectbeam(const beamdata& b, const lineendvalues& ends, int intervals, vec2* deflections);
