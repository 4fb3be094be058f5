// SPDX-License-Identifier: GPL-3.0-or-later
// The units that the solver takes for a model that says nothing: the keys length, force and mass of
// feiflu.ini.
#pragma once

// Into solverunits; millimetres, newtons and kilograms where the file or a key is missing.
void readsolverunits();
