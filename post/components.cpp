// SPDX-License-Identifier: GPL-3.0-or-later
// The table of stress components.
#include "post/components.h"

#include "post/exactstress.h"

static_assert(misesupper == toldcomponents + 1 && exactend == componentcount + 1);

const componentrow stresscomponents[componentcount] = {
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
    {"Von Mises, upper face (+e3)", "VMU", "Von Mises, upper face"},
    {"Von Mises, middle", "VMM", "Von Mises, middle"},
    {"Von Mises, lower face (-e3)", "VML", "Von Mises, lower face"},
    {"Von Mises, largest of the three", "VMX", "Von Mises, largest"},
    {"Principal stress 1, upper face", "S1U", "Principal 1, upper face"},
    {"Principal stress 2, upper face", "S2U", "Principal 2, upper face"},
    {"Principal stress 1, middle", "S1M", "Principal 1, middle"},
    {"Principal stress 2, middle", "S2M", "Principal 2, middle"},
    {"Principal stress 1, lower face", "S1L", "Principal 1, lower face"},
    {"Principal stress 2, lower face", "S2L", "Principal 2, lower face"},
    {"Plate force Nx", "NX", "Nx, F/L"},
    {"Plate force Ny", "NY", "Ny, F/L"},
    {"Plate force Nxy", "NXY", "Nxy, F/L"},
    {"Plate moment Mx", "MX", "Mx, F L/L"},
    {"Plate moment My", "MY", "My, F L/L"},
    {"Plate moment Mxy", "MXY", "Mxy, F L/L"},
    {"Plate shear force Vx", "VX", "Vx, F/L"},
    {"Plate shear force Vy", "VY", "Vy, F/L"},
    {"Line: normal stress N/A", "LN", "Normal stress N/A"},
    {"Line: bending stress", "LB", "Bending stress"},
    {"Line: largest stress", "LMAX", "Largest stress"},
    {"Line: smallest stress", "LMIN", "Smallest stress"},
    {"Line: corner +e2 +e3", "LC1", "Corner +e2 +e3"},
    {"Line: corner -e2 +e3", "LC2", "Corner -e2 +e3"},
    {"Line: corner -e2 -e3", "LC3", "Corner -e2 -e3"},
    {"Line: corner +e2 -e3", "LC4", "Corner +e2 -e3"},
    {"Line: Von Mises", "LVM", "Von Mises"},
};

const directionrow directions[directioncount] = {
    {"X, Y, Z, Displacement (Length of displacement vector)", "Displacement", "XYZ Displacements"},
    {"X Displacement", "DX", "X Displacements"},
    {"Y Displacement", "DY", "Y Displacements"},
    {"Z Displacement", "DZ", "Z Displacements"},
    {"X Rotation", "RX", "X Rotations, degrees"},
    {"Y Rotation", "RY", "Y Rotations, degrees"},
    {"Z Rotation", "RZ", "Z Rotations, degrees"},
};

const char* const stresssymbols[13] = {"Sx",  "Sy",  "Sz",  "Sxy", "Sxz", "Syz",     "Sbx",
                                       "Sby", "Sbz", "Stx", "Sty", "Stz", "Combined"};
