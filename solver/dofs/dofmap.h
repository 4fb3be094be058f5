// SPDX-License-Identifier: GPL-3.0-or-later
// The degrees of freedom of the nodes and what became of each.
//
// A node's degree of freedom i = (n-1)*pernode + k is one of: an unknown; a constant; a combination
// of up to six unknowns and a constant. Unknowns belong to an owner: the node itself or the node
// that leads its rigid body. An owner's unknowns are consecutive. Where processes share the model
// nodes and unknowns are those of this one's part.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "solver/base/model.h"
#include "solver/base/report.h"
#include "solver/base/settings.h"
#include "solver/processes/sharing.h"

using vec6 = Eigen::Matrix<double, 6, 1>;

struct combination {
    int first = 0, count = 0;  // unknowns first..first+count-1
    double factor[6] = {};
    double constant = 0;
};

// A direction that nothing stiffens, over the base values of its owner.
struct helddirection {
    int owner;
    vec6 direction;
};

struct rigidbody {
    int leader = 0;
    std::vector<int> nodes;  // the leader among them
};

// Base values of an owner (a body's DX DY DZ RX RY RZ, or DX DY RZ in 2-D; a node's own) are
// start + z * unknowns.
struct ownerspace {
    int owner = 0, body = -1;  // body: -1 a single node
    int base = 0, count = 0;   // base values, unknowns
    mat6 z = mat6::Zero();
    vec6 start = vec6::Zero();
};

// Which masses the wanted motions move: no ones in static cases, or those of MASS elements and of
// nodes, or those of the other elements, too.
enum class masses { none, points, all };

struct dofmap {
    int anadof = 3;                         // code of the result files
    int pernode = 6;                        // degrees of freedom of a node
    int code[6] = {1, 2, 3, 4, 5, 6};       // of each
    int place[7] = {-1, 0, 1, 2, 3, 4, 5};  // of code 1..6, -1: the analysis has none
    int unknowns = 0;

    static constexpr int constantdof = -1;
    std::vector<int> equation;     // >= 0 unknown, -1 constant, below: combination -2-c
    std::vector<double> constant;  // of those with -1
    std::vector<combination> combinations;
    std::vector<char> prescribed;  // 1: the model constrains it
    std::vector<int> owner;        // (1..nnodes): owner of the node, 0 where it has no unknown
    std::vector<int> position;     // (1..nnodes): owner's place in the order of elimination, -1
    std::vector<int> firstunknown, unknowncount;  // by place
    std::vector<rigidbody> bodies;
    std::vector<int> bodyof;  // (1..nnodes): body of the node, -1
    std::vector<ownerspace> spaces;
    std::vector<int> spaceof;         // (1..nnodes): space of the owner, -1
    std::vector<helddirection> held;  // of owners with a space; others have heldplain
    std::vector<char> heldplain;      // by degree of freedom: 1 held

    // Among processes: nodes from 0, and unknowns. By place: where owner and first unknown are
    // among those of all.
    sharingptr nodes = std::make_shared<const sharing>();
    sharingptr freedoms = nodes;
    std::vector<int> placeofall, firstofall;
    int ownersofall = 0, unknownsofall = 0;

    int dofs() const { return int(equation.size()); }
    std::size_t index(int node, int k) const {
        return std::size_t(node - 1) * std::size_t(pernode) + std::size_t(k);
    }
};
