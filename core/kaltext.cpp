// SPDX-License-Identifier: GPL-3.0-or-later
// The text of the further file.
#include "core/kaltext.h"

std::string kaltext, unitstext;
double lengthscale = 0;
