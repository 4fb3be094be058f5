// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers of foreign texts that stand as expressions: 27.5/2, 3+6/12, (2+1)*4, 2**3.
#pragma once

#include <string_view>

// The value by the rules of Fortran, all numbers real: ** before * and /, these before + and -; a
// sign may follow an operator. False, with the number left as it was, for what has no finite value.
bool readexpression(std::string_view text, double& number);
