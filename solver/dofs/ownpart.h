// SPDX-License-Identifier: GPL-3.0-or-later
// What one of several processes keeps of a model: its own elements, those that share a node with
// them, and the nodes of both. Whoever has an element at a node thus holds all that meet there.
#pragma once

#include "solver/dofs/dofs.h"

// Leaves of the part that was dealt and of its degrees of freedom, which are not numbered yet, what
// this process keeps, and tells where its owners are among those of all.
void keeppart(model& m, dofmap& d);

// Tells each process where its unknowns, which are numbered here, are among those of all: these
// follow the order of the nodes.
void shareunknowns(dofmap& d);

// The graph of the owners of all, by their places among all, on the first process. blocks: out, the
// first unknown of each owner and one more at the end.
nodegraph gathergraph(const model& m, const dofmap& d, std::vector<int>& blocks);
