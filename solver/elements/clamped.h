// SPDX-License-Identifier: GPL-3.0-or-later
// Clamped edges of shells. Supports that hold an edge from moving in the plane of a shell keep the
// edge from turning there, but not the material, which turns by half of its shear strain; and this
// is the rotation of a node that shells know. So a node of such an edge keeps that rotation as an
// unknown, although supports hold it: held, it costs shear stiffness to the first order of the size
// of the elements.
#pragma once

#include "solver/elements/corners.h"

// Fills m.clamped, in the order of the nodes. A node at which anything but plates and shells of one
// surface knows rotations, or that has moments or given rotations, is none of them.
void findclamped(model& m, const cornerlist& corners);
