// SPDX-License-Identifier: GPL-3.0-or-later
// Forces at the nodes along an edge of shells, which stand for a load all along it.
#pragma once

#include <functional>

#include "solver/base/model.h"
#include "solver/base/settings.h"

// The edges of shells bow with the drilling rotations at their ends, and a load all along an edge
// works on the bow: beside its forces it has moments, which cancel where two edges go on one
// another and are left at corners. Finds them from the forces of the nodes (by node, slot 0 unused)
// and gives them to add(node, moment); those of an edge add up to zero. Edges of other processes'
// elements are left to these.
void eachedgemoment(const model& m, const settings& s, const std::vector<vec3>& forces,
                    const std::function<void(int, const vec3&)>& add);
