// SPDX-License-Identifier: GPL-3.0-or-later
// The result files beside the model.
#pragma once

#include <string>

#include "solver/modes/eigenmodes.h"
#include "solver/modes/mass.h"
#include "solver/results/stresses.h"

// .rvp: header, then a case's node rows and its name.
void writedisplacements(const model& m, const dofmap& d, const displacements& u);
// .KRT: header, then a case's numbered node rows, their sum as node 0, and its name.
void writereactions(const model& m, const dofmap& d, const displacements& u, const reactionset& r);
// .EIG: header, then a mode's omega^2 and its node rows.
void writemodes(const model& m, const dofmap& d, const modeset& r);
// The stresses of other processes come in while they are written; ten digits tell each.
// .LES .MEM: by case a record a line element, then "END"
void writelines(const model& m, const settings& s, const dofmap& d, const displacements& u,
                const lineends& r);
// .NSR .NSL (each element's own corners) .NSA .NLA (means of a group's elements at a node)
void writeplatestresses(const model& m, const settings& s, const platestresses& r, int cases);
// .EMS: a row a group, its number, mass, centre and radii of gyration. masses: from slot 1.
void writemasses(const model& m, const std::vector<massproperties>& masses);
// .DAT
void writesummary(const model& m, std::int64_t halfbandwidth);
