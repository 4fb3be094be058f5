// SPDX-License-Identifier: GPL-3.0-or-later
// The units of a model as its further file BASE.kal tells them, for programs that read nothing else
// of that file:
//
//     "section","units"
//     "m kN t",1,1000,1000      names; metres, newtons, kilograms in one unit
//     "end"
//
// "free" alone stands for units that have no names.
#pragma once

#include <string>

extern const char* const unitssection;  // the keyword

// The row as it stands, "" for a model that says nothing. Throws errtype with name and line for a
// damaged file: who took it for silence would take one unit for another.
std::string unitsrow(const std::string& base);
