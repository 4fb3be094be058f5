// SPDX-License-Identifier: GPL-3.0-or-later
// Springs and masses.
#include "solver/elements/spring.h"

#include <cmath>

static mat6 springmatrix(const element& e) {
    mat6 k = mat6::Zero();
    const int first = e.type == typespringr ? 3 : 0, count = e.type == typespringt ? 3 : 6 - first;
    k.block(first, first, count, count) = e.g->spring.block(first, first, count, count);
    return (k + k.transpose()) / 2;
}

void checkspring(const element& e) {
    const mat6& k = e.g->spring;
    const double rounding = 1e-5;  // the matrix is kept in single precision
    for (int i = 0; i < 6; ++i) {
        if (k(i, i) < 0)
            refuseelement(e,
                          "has a negative stiffness on the diagonal of its matrix; correct it in "
                          "the element group");
        for (int j = 0; j < i; ++j)
            if (std::fabs(k(i, j) - k(j, i)) > rounding * std::fabs(k(i, j) + k(j, i)))
                refuseelement(e, "has a spring matrix that is not symmetric in row " +
                                     std::to_string(i + 1) + ", column " + std::to_string(j + 1) +
                                     "; correct it in the element group");
    }
    if (springmatrix(e).isZero(0))
        refuseelement(
            e, "has no stiffness; fill in the rows of its spring matrix in the element group");
}

void stiffenspring(const element& e, elmatrix& k) {
    const mat6 one = springmatrix(e);
    if (e.nodes == 1) {
        k = one;
        return;
    }
    k.resize(12, 12);
    k << one, -one, -one, one;
}

void checkmass(const element& e) {
    for (const groupfield f : {fielddensity, fieldixx, fieldiyy, fieldizz})
        if (e.field(f) < 0)
            refuseelement(e, "has a mass or inertia below 0; correct it in the element group");
}

void masspoint(const element& e, elmatrix& m) {
    const double mass = e.field(fielddensity);
    m.setZero(6, 6);
    m.diagonal() << mass, mass, mass, e.field(fieldixx), e.field(fieldiyy), e.field(fieldizz);
}
