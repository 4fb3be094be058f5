// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the solver's result files and their sum over load cases for a combination.
//
// Results stand beside the model, named as it is. A value of a combination is the sum over the
// load cases of multiplier times value; the file decides how many load cases there are.
#pragma once

#include "core/textfile.h"

// Values a node row holds by the analysis code in the header of the file: 0 x y z, 1 x y, 2 x y rz,
// 3 x y z rx ry rz.
struct noderow {
    double x = 0, y = 0, z = 0;
    double rotation[3] = {0, 0, 0};  // code 2 fills the third
};
noderow readnoderow(textin& in, int anadof);
// Count of nodes and analysis code of .rvp and .KRT; throws where they do not fit the model.
int readheader(textin& in);

// Displacements of the current combination into set 1 of nodes, and maxdisp. False after the
// message of a failed read; what was read stands.
bool readdisp();
// Mode shape number curlcomb of .EIG likewise. A number that the file does not reach leaves the
// former shape, with maxdisp 0.
bool readmode();
extern double modevalue;  // omega^2 of the shape shown, 1/s^2
extern int modecount;     // modes that the file holds
