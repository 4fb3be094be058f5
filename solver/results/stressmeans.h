// SPDX-License-Identifier: GPL-3.0-or-later
// Means of the stresses at a node, over the elements of one group that continue one surface there.
#pragma once

#include <vector>

#include "solver/results/records.h"
#include "solver/results/stresses.h"

// Which corners share a mean. Elements of a group that meet at a node belong together where their
// normals, whichever way they point, are within 20 degrees of each other, or of others between
// them; sharper folds and joints of three plates split.
struct meanslots {
    std::vector<int> slot;       // of each corner
    std::vector<char> opposed;   // by corner, 1: its normal looks against that of the slot's first
    std::vector<int> first;      // of each slot's corners in order; one more at the end
    std::vector<int> order;      // corners by slot
    std::vector<int> elementof;  // of each corner, place in platestresses::elements
    std::vector<mat3> axes;      // stress axes, by the same place
    int count() const { return int(first.size()) - 1; }
};
meanslots findslots(const model& m, const settings& s, const platestresses& p);

// Means of a case by slot, bending for the face of the slot's first corner.
std::vector<facestress> findmeans(const model& m, const settings& s, const platestresses& p,
                                  const meanslots& slots, int lc);

// The mean of a corner's slot, bending for the face to which the corner's own normal looks.
facestress meanat(const meanslots& slots, const std::vector<facestress>& means, int corner);
