// SPDX-License-Identifier: GPL-3.0-or-later
// Solids with the stiffness of a group's beams.
#include "exchange/deckbeam.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"
#include "core/session.h"

bool deckbeam::isvalid() const {
    return first > 0 && second > 0 && std::isfinite(first) && std::isfinite(second);
}

// Shear g1 (c - 1)^2 y^2 + g2 (c + 1)^2 x^2 under the warping c x y, at the c that makes it least.
double bricktorsion(double i1, double i2, double g1, double g2) {
    return 4 * g1 * i1 * g2 * i2 / (g1 * i1 + g2 * i2);
}

// Moduli that give way alike in both planes, I / g = s, as little as the torsion allows. The beams
// here do not give way in shear: where the torsion would ask for more than a tube does, bending
// goes first.
static void chooseshear(deckbeam& b, double modulus, double area, double i1, double i2,
                        double asked) {
    const double depth = std::max(b.istube ? 2 * b.first : b.first, b.istube ? 0 : b.second);
    const double unit = area * depth * depth / modulus;
    const double most = 0.4, least = 0.05;  // 1.2 and 0.15 per cent of bending at 20 depths
    double s = asked > 0 ? 2 * i1 * i2 / asked : least * unit;
    if (dim2d || !(s < most * unit)) s = least * unit;
    b.shear1 = i2 / s;
    b.shear2 = i1 / s;
    if (asked > 0) b.stiffer = bricktorsion(i1, i2, b.shear1, b.shear2) / asked;
}

deckbeam beamofgroup(int g, int type) {
    const double modulus = groups(g, fieldmodulus), area = groups(g, fieldthickness),
                 i1 = groups(g, fieldixx), alike = 1e-3;
    const bool isround = type == typepipe || std::fabs(i1 - groups(g, fieldiyy)) <= alike * i1;
    const double outer = (4 * i1 / area + area / pi) / 2, inner = (4 * i1 / area - area / pi) / 2;
    const double i2 = isround && inner > 0 ? i1 : double(groups(g, fieldiyy));
    deckbeam b;
    if (isround && inner > 0) {
        b.istube = true;
        b.first = std::sqrt(outer);
        b.second = std::sqrt(outer) - std::sqrt(inner);
    } else {
        b.first = std::sqrt(12 * i2 / area);
        b.second = std::sqrt(12 * i1 / area);
        b.part = area / (b.first * b.second);
    }
    const double shear = modulus / (2 + 2 * groups(g, fieldpoisson));
    // The moduli count over the solid's own inertias, which are those of the group by the part.
    chooseshear(b, modulus, area, i1, i2, shear * groups(g, fieldizz));
    b.shear1 *= b.part;
    b.shear2 *= b.part;
    return b;
}
