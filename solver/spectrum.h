// SPDX-License-Identifier: GPL-3.0-or-later
// The largest eigenvalues of L^-1 M L^-T, where L L' = A is factorised and M has no negative
// energy. They are those v of M x = v A x.
#pragma once

#include <Eigen/Core>

#include "solver/engine.h"
#include "solver/report.h"

struct spectrum {
    Eigen::VectorXd value;    // v, largest first, all above 0
    Eigen::MatrixXd vectors;  // x, by columns
};

// At most so many; fewer where M has less rank. Each multiple eigenvalue comes as often as it is.
spectrum largestvalues(engine& a, const sparsematrix& mass, int wanted, runlog& log);

// Columns of work space that the search needs beside the factor.
int spectrumcolumns(const sparsematrix& mass, int wanted);
