// SPDX-License-Identifier: GPL-3.0-or-later
// The element catalogue: name, node count and description of every element type, read at start
// from ELTYP.DAT and ELDES.DAT in appdir. The type code of an element is its index here.
#pragma once

#include <string>

#include "core/array.h"
#include "core/codes.h"

const int maxelementtypes = 41;  // records 0..40

extern array1<std::string> eltypname;  // (0..40)
extern array1<int> eltypnodes;         // (0..40) 1..4; 0 where no type stands
extern array1<std::string> eltypdes;   // (0..40)
extern int neltypes;                   // records read, the empty record 0 included

void alloccatalogue();
// Reads both files. A missing file throws errfilenotfound with the text that the user is shown;
// a damaged one throws with file and line.
void loadcatalogue();

// Number of the type with this name, 0 for none.
int findtype(const std::string& name);
// Nodes of type t as elements store it (a Single); 0 for a free slot or an unknown code.
int nodesoftype(float t);
