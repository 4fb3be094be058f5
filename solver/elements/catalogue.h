// SPDX-License-Identifier: GPL-3.0-or-later
// What a kind of element is, apart from what it can do: names and numbers, in the order of the
// codes. The element families know these, and the kinds know the families.
#pragma once

#include "core/codes.h"
#include "core/runtime.h"

enum class family {
    none,   // free slot
    point,  // one node
    line,   // two nodes and a section: stresses in .LES
    link,   // two nodes without a section
    plate   // three or four corners: stresses in .NSR and its like
};

// What of a node's freedom a kind surely stiffens, whatever its geometry.
enum class stiffened { unsure, translations, all };

struct kindfacts {
    int code;
    const char* name;
    int nodes;
    family fam;
    int nodedofs;              // 3: translations alone; 6: rotations too
    stiffened nodes3, nodes2;  // in 3-D, in a 2-D analysis
};

inline constexpr kindfacts catalogue[] = {
    {typenone, "NONE", 0, family::none, 3, stiffened::unsure, stiffened::unsure},
    {typetruss, "TRUSS", 2, family::line, 3, stiffened::unsure, stiffened::unsure},
    {typememb3, "MEMB3", 3, family::plate, 3, stiffened::unsure, stiffened::translations},
    {typememb4, "MEMB4", 4, family::plate, 3, stiffened::unsure, stiffened::translations},
    {typemass, "MASS", 1, family::point, 6, stiffened::unsure, stiffened::unsure},
    {typeshear4, "SHEAR4", 4, family::plate, 3, stiffened::unsure, stiffened::unsure},
    {typebeam, "BEAM", 2, family::line, 6, stiffened::all, stiffened::all},
    {typepipe, "PIPE", 2, family::line, 6, stiffened::all, stiffened::all},
    {typeshell3, "SHELL3", 3, family::plate, 6, stiffened::all, stiffened::all},
    {typeshell4, "SHELL4", 4, family::plate, 6, stiffened::all, stiffened::all},
    {typeplate3, "PLATE3", 3, family::plate, 6, stiffened::unsure, stiffened::unsure},
    {typeplate4, "PLATE4", 4, family::plate, 6, stiffened::unsure, stiffened::unsure},
    {typespring2, "SPRING2", 2, family::link, 6, stiffened::unsure, stiffened::unsure},
    {typerigid, "RIGID", 2, family::link, 6, stiffened::unsure, stiffened::unsure},
    {typespringt, "SPRING-T", 1, family::point, 6, stiffened::unsure, stiffened::unsure},
    {typespringr, "SPRING-R", 1, family::point, 6, stiffened::unsure, stiffened::unsure},
    {typespring, "SPRING", 1, family::point, 6, stiffened::unsure, stiffened::unsure},
};
const int lasttype = typespring;
static_assert(sizeof catalogue / sizeof catalogue[0] == lasttype + 1);

// type: 1..lasttype.
inline const kindfacts& factsof(int type) {
    if (type < 0 || type > lasttype) throw subscripterror(type, lasttype);
    return catalogue[type];
}
