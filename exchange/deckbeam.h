// SPDX-License-Identifier: GPL-3.0-or-later
// Beams of a deck. Its solver makes a solid of each, one brick across: a rectangle or a tube has
// the area and inertias that are asked for, and a shear modulus of its own the torsion.
#pragma once

#include <string_view>

// Elements of sets whose names begin so carry nothing: they make a rigid knot of a clamped end,
// without which the deck's solver does not tell its reactions.
inline constexpr std::string_view footset = "FOOT-OF-CLAMP";
// The nodes of a plane of membranes that went out as shells, which it keeps in their plane.
inline constexpr std::string_view planeset = "PLANE-OF-MEMBRANES";

struct deckbeam {
    bool istube = false;
    double first = 0, second = 0;  // sides along axes 1 and 2, or radius and wall
    double part = 1;  // of the modulus and of the density, so that area and inertias hold
    double shear1 = 0, shear2 = 0;  // moduli across, along axes 1 and 2
    double stiffer = 1;             // torsion in the deck, by that of the group

    bool isvalid() const;
    double depth() const { return istube ? 2 * first : second; }
};
deckbeam beamofgroup(int g, int type);

// Stiffness in torsion of one brick of second order across the section: its ends warp as x y does.
double bricktorsion(double i1, double i2, double shear1, double shear2);
