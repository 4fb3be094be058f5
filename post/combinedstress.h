// SPDX-License-Identifier: GPL-3.0-or-later
// The combined stress of a point: von Mises' stress at the worst sign of bending and torsion.
#pragma once

// s(1..12) of a stress record: Sx Sy Sz Sxy Sxz Syz, bending Sbx Sby Sbz, torsion Stx Sty Stz;
// s[0] is not used.
double combinedstressof(const float* s);

// Component 13 of elemstress for every element and corner, from what is summed there.
void combinedstress();
