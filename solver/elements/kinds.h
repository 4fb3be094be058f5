// SPDX-License-Identifier: GPL-3.0-or-later
// What each kind of element can do. It stands behind function pointers: a new kind is a new row
// here and in the catalogue.
#pragma once

#include "solver/elements/catalogue.h"
#include "solver/elements/element.h"

struct elementkind : kindfacts {
    // Refuses geometry and properties that the kind cannot take.
    void (*check)(const element& e);
    // Model axes, nodes x nodedofs square. Null where the kind has no stiffness of its own.
    void (*stiffness)(const element& e, elmatrix& k);
    // Consistent mass, same shape, mass units. Null: none.
    void (*mass)(const element& e, elmatrix& m);
    // Adds to f the nodal forces that stand for these.
    void (*spread)(const element& e, placedforces forces, elvector& f);
    // Plates: rows 6c..6c+5 of s give membrane x, y, xy and bending x, y, xy (at the +e3 face) at
    // corner c in stress axes, from the nodal displacements in model axes.
    void (*stress)(const element& e, elmatrix& s);
};

// type: 1..lasttype.
const elementkind& kindof(int type);
