// SPDX-License-Identifier: GPL-3.0-or-later
// Units between a foreign file and the model.
//
// Programs that know no units want consistent ones: a unit of force gives that of mass one unit of
// length a second squared, and accelerations are in the unit of length. In the model a mass has a
// unit of its own, and accelerations are in metres.
#pragma once

#include "core/units.h"
#include "exchange/imported.h"

// What numbers of the model are multiplied with for such a program; 1 where its units are free.
double consistentmass(const unitset& model);
double consistentacceleration(const unitset& model);

// The units in which the materials of a file of consistent numbers are metals, "" for none: no
// other hint has such a file.
std::string unitsofmetals(const imported& found);

// Brings all numbers into the units of the model in hand. A new or empty model takes those of the
// file; where a model says nothing, lengths and forces stay as they are and the report tells.
void fitunits(imported& found, bool isnewmodel);
