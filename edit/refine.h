// SPDX-License-Identifier: GPL-3.0-or-later
// Refinement of the selected elements: lines into two, triangles and quadrilaterals into four.
#pragma once

// Asks first. Neighbours share the nodes on their common sides; the parts keep type, group,
// rotation and distributed loads of the element and join the selection. Returns how many elements
// were split; 0 with the model untouched when the user said No or the parts do not fit.
int refineelements();
