// SPDX-License-Identifier: GPL-3.0-or-later
// Merging of nodes that lie within the merge tolerance and of elements that stand twice, and the
// reports of both.
#pragma once

// Nearer than mergetol along each axis and in space, all strictly.
bool isnear(const float* a, const float* b);

// For each selected node in the order of the list, all nodes in number order: a near one is merged
// with it, the lower number and its place stay. References in elements, conditions and the
// selection follow, the node list is closed up. Returns how many nodes went.
int mergenodes();
// Elements of the same type and group with the same nodes in any order: the later ones go.
// Returns how many.
int mergeelements();

// Pairs of near nodes, and double elements, into modelname + ".txt"; the model is not changed.
// Return the number of lines, -1 when the file could not be written (the user was told).
int findmergenodes();
int finddoubleelems();
