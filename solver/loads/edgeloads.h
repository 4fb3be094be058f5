// SPDX-License-Identifier: GPL-3.0-or-later
// Forces at the nodes along an edge of shells, which stand for a load all along it.
#pragma once

#include <functional>
#include <vector>

#include "solver/base/model.h"
#include "solver/base/settings.h"

// The edges that one shell alone has. They bow with the drilling rotations at their ends, and a
// load all along an edge works on the bow: beside its forces it has moments, which cancel where two
// edges go on one another and are left at corners.
class shellrims {
  public:
    shellrims(const model& m, const settings& s);  // of the model's slip

    // Finds the moments from the forces among the rows and gives them to add(node, moment); those
    // of a straight edge add up to zero. Edges of other processes' elements are left to these.
    void eachmoment(const std::vector<nodalrow>& rows,
                    const std::function<void(int, const vec3&)>& add) const;

  private:
    struct rim {
        int place[2];  // of its nodes among those of rims
        int element, edge;
        vec3 across;  // in the plane of the element, out of it; its size is the edge's length
    };
    const vec3& acrossof(int r) const { return rims[std::size_t(r)].across; }

    const model& m;
    const settings& s;
    std::vector<rim> rims;             // by their nodes
    std::vector<int> placeof;          // by node, -1: on no rim
    std::vector<std::vector<int>> at;  // by place: rims there
};
