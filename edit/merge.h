// SPDX-License-Identifier: GPL-3.0-or-later
// Merging of nodes that lie within the merge tolerance and of elements that stand twice, and the
// reports of both.
#pragma once

#include <string>

// Nearer than mergetol along each axis and in space, all strictly.
bool isnear(const float* a, const float* b);

// For each selected node in the order of the list, all nodes in number order: a near one is merged
// with it, the lower number and its place stay. References in elements, conditions and the
// selection follow, the node list is closed up. An element that lost its shape, two of its corners
// being one node now, leaves the model or goes on as a triangle; a message says how many. Returns
// how many nodes went.
int mergenodes();
// Elements of the same type and group with the same nodes in any order: the later ones go.
// Returns how many.
int mergeelements();

// The button "Merge now": all nodes and all elements, whatever is selected. Returns what to say.
std::string mergeall();
// How many nodes the buffer brings: all of them, or, where nodes merge by themselves, one a place
// that no node of the model holds.
int newplaces();
// What there is to say when the tolerance is finer than the largest coordinates of model and buffer
// can be told apart as Singles; empty when it is not.
std::string tolerancenote();
double coordinatestep();  // of the largest coordinate of both

// Pairs of near nodes, and double elements, into modelname + ".txt"; the model is not changed.
// Return the number of lines, -1 when the file could not be written (the user was told, or
// would not have the comment replaced).
int findmergenodes();
int finddoubleelems();
