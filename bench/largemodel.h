// SPDX-License-Identifier: GPL-3.0-or-later
// The large model of the benchmarks: a flat grid of quadrilaterals.
#pragma once

// Declares the sizes for it and fills the model with side x side quadrilaterals.
void makelargemodel(int side);
// A session in a directory of its own under the temporary directory; returns that directory.
const char* startsession();
// Bytes of all arrays that the declared sizes stand for.
double declaredbytes();
