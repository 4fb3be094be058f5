// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed label tables: degrees of freedom, axes, forces, kinds of load case.
#pragma once

#include <string>

#include "core/array.h"

extern array1<std::string> doflabel;    // (0..6) "DX".."RZ"
extern array1<std::string> axislabel;   // (0..6) " X"," Y"," Z","RX","RY","RZ"
extern array1<std::string> forcelabel;  // (0..6) "FX".."MZ"
extern array1<std::string> lckindname;  // (0..10) the five kinds of load case
extern array1<std::string> lcsubname;   // (0..10) indexed by lctype

void filllabels();      // the three tables of directions
void fillloadlabels();  // the two tables of load cases
