// SPDX-License-Identifier: GPL-3.0-or-later
// What a model says beyond its arrays. kaltext is the text of its file BASE.kal without the units:
// UTF-8, lines end with LF; of its form files/kalfile knows.
#pragma once

#include <string>

extern std::string kaltext;

// "mm N kg" and the like: the units of length, force and mass that the model says it has; "free"
// for units that are the user's own affair, "" for a model that says nothing.
extern std::string unitstext;
// What the lengths of the model in hand have been multiplied with; 0 while none was converted.
extern double lengthscale;
