// SPDX-License-Identifier: GPL-3.0-or-later
// The elements that belong to a patch: finding them in a model that was read, and making them
// anew after the spaces or the shape of its graphic elements were changed.
#pragma once

#include <map>
#include <string>
#include <vector>

// Elements first..last are the mesh of patch p.
void ownelements(int p, int first, int last);
// Makes the mesh of every patch anew from the second list, telling nothing; the elements of the
// model in the same places are its own.
void findownelements();

// The meshes of these patches anew, in place of their elements; nodes that nothing uses any more
// go, those with constraints or loads stay. Returns what there is to say; nothing is changed where
// one of the patches can not be meshed, and done is false.
std::string meshagain(const std::vector<int>& list, bool& done);

// Shares out this many spaces over the pieces of an edge, in the measure of those that they have;
// pieces that stand in the list keep what it says, the others enter it. Returns why it can not be.
std::string sharespaces(const std::vector<int>& pieces, int total, std::map<int, int>& spaces);
// Gives an edge of a patch this many spaces, with the edges opposite to it, and on through the
// patches that share a graphic element. Returns the patches that changed; fault tells why nothing
// was changed.
std::vector<int> spreadspaces(int p, int edge, int spaces, std::string& fault);

// Has the elements of the patches found whenever a model was read, and patches copied: their
// graphic elements into the second list, their meshes made anew from it, telling nothing.
void wirepatches();
