// SPDX-License-Identifier: GPL-3.0-or-later
// The table of stress components.
#include "post/components.h"

const componentrow stresscomponents[13] = {
    {"Direct Stress X-direction", "SX", "SX"},
    {"Direct Stress Y-direction", "SY", "SY"},
    {"Direct Stress Z-direction", "SZ", "SZ"},
    {"Shear stress XY-plane", "SXY", "SXY"},
    {"Shear stress XZ-plane ", "SXZ", "SXZ"},
    {"Shear stress YZ-plane ", "SYZ", "SYZ"},
    {"Bending Stress around X-Axis", "SBX", ""},
    {"Bending Stress around Y-Axis", "SBY", ""},
    {"Bending Stress around Z-Axis", "SBZ", ""},
    {"Torsion Shear around X-Axis", "STX", ""},
    {"Torsion Shear around Y-Axis", "STY", ""},
    {"Torsion Shear around Z-Axis", "STZ", ""},
    {"Combined Stress (Von Mises)", "VM", "Combined Stress "},
};

const char* const displacementcaptions[4] = {
    "X, Y, Z, Displacement (Length of displacement vector)", "X Displacement", "Y Displacement",
    "Z Displacement"};

const char* const stresssymbols[13] = {"Sx",  "Sy",  "Sz",  "Sxy", "Sxz", "Syz",     "Sbx",
                                       "Sby", "Sbz", "Stx", "Sty", "Stz", "Combined"};
