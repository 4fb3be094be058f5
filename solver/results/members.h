// SPDX-License-Identifier: GPL-3.0-or-later
// Forces and deflections along line elements.
#pragma once

#include "solver/equations/forces.h"
#include "solver/loads/loads.h"
#include "solver/results/rowtext.h"

const int memberstations = 21, membervalues = 9;

// A station: place 0..1; N, Vy, Vz, T, My, Mz as they act, in local axes, on the face that looks
// along +e1; deflections v along e2 and w along e3, the ends' own among them. A TRUSS, which has no
// inertia, deflects as its ends do.
using memberline = Eigen::Matrix<double, membervalues, memberstations>;

// The records of BASE.MEM in one case: element, number of stations, their values one after the
// other, each to seven digits of the largest of its kind in the record.
class memberwriter {
  public:
    memberwriter(const model& m, const settings& s, const dofmap& d, const displacements& u,
                 int lc);
    // ends: as lineends holds them.
    void put(const element& e, const double* ends, rowtext& text) const;

  private:
    memberline lineof(const element& e, const double* ends) const;
    const model& m;
    const dofmap& d;
    const double* u;
    caseloads loads;
    std::array<keptnumber, memberstations> places;
};
