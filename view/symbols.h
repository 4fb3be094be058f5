// SPDX-License-Identifier: GPL-3.0-or-later
// The picture symbols of spring elements: a table of names; the pictures themselves are kept by
// the surface under the names that pictureof gives.
#pragma once

#include <string>

#include "core/array.h"

const int nsymbols = 11;
extern array1<std::string> symbolname;  // (0..10), rows 0, 1, 2 for element types 16, 14, 15

void initsymbols();
// Name under which a surface finds the picture of a row in its normal or selected state.
std::string pictureof(int row, bool selected);
// The symbol of a type centred at x, y (cm); selected where drawcolor is selcolor.
void drawsymbol(int elementtype, int nview, double x, double y);
