// SPDX-License-Identifier: GPL-3.0-or-later
// What engines beside the own factor say, in the words of this program.
#pragma once

#include <string>

// Of a fault code of MUMPS, INFOG(1), and its detail, INFOG(2). scratch: folder of the factor on
// disc, "" where there is none.
std::string mumpsfault(int code, int detail, const std::string& scratch);
