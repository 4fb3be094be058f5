// SPDX-License-Identifier: GPL-3.0-or-later
// The catalogue of element kinds: one row a kind, in the order of its code. What a family can do
// stands behind the function pointers; a new kind is a new row.
#pragma once

#include "solver/element.h"

enum class family {
    none,   // free slot
    point,  // one node
    line,   // two nodes and a section: stresses in .LES
    link,   // two nodes without a section
    plate   // three or four corners: stresses in .NSR and its like
};

// What of a node's freedom a kind surely stiffens, whatever its geometry.
enum class stiffened { unsure, translations, all };

struct elementkind {
    int code;
    const char* name;
    int nodes;
    family fam;
    int nodedofs;              // 3: translations alone; 6: rotations too
    stiffened nodes3, nodes2;  // in 3-D, in a 2-D analysis
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

const int lasttype = typespring;

// type: 1..lasttype.
const elementkind& kindof(int type);
