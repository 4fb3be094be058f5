// SPDX-License-Identifier: GPL-3.0-or-later
// The content of a new model, and the reset that gives an empty model again.
#pragma once

// The parts of a new model, each put into its first row.
void newcombination();
void newgroup();
void defaultgroup(int g);      // the steel of a model in millimetres and newtons
void defaultloadcase(int lc);  // kind and parameters
// One load case, one load combination, one element group, in arrays whose counts are 0.
void newmodeldefaults();
// Arrays allocated anew, colours, counts 0, views, new-model content. False when memory is short:
// the user was told, and the arrays are not to be touched.
bool resetmodel();
