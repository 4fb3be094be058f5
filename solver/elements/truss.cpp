// SPDX-License-Identifier: GPL-3.0-or-later
// TRUSS: an axial bar.
#include "solver/base/refuse.h"
#include "solver/elements/line.h"

void checktruss(const element& e) {
    if (!(lengthof(e) > 0)) refuseelement(e, "has no length; give its nodes different places");
    if (!(e.field(fieldmodulus) > 0)) refuseelement(e, "has no E modulus; give the group one");
    if (!(e.field(fieldthickness) > 0)) refuseelement(e, "has no area; give the group one");
    if (e.field(fielddensity) < 0)
        refuseelement(e, "has a specific mass below 0; correct it in the element group");
}

void stiffentruss(const element& e, elmatrix& k) {
    const double length = lengthof(e);
    const vec3 axis = (e.x[1] - e.x[0]) / length;
    const mat3 block =
        e.field(fieldmodulus) * e.field(fieldthickness) / length * axis * axis.transpose();
    k.resize(6, 6);
    k << block, -block, -block, block;
}

void masstruss(const element& e, elmatrix& m) {
    const double mass = e.field(fielddensity) * e.field(fieldthickness) * lengthof(e);
    const mat3 one = mat3::Identity() * mass / 6;
    m.resize(6, 6);
    m << 2 * one, one, one, 2 * one;
}

void spreadtruss(const element&, placedforces forces, elvector& f) {
    for (const auto& [place, force] : forces) {
        f.segment<3>(0) += (1 - place[0]) * force;
        f.segment<3>(3) += place[0] * force;
    }
}
