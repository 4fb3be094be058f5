// SPDX-License-Identifier: GPL-3.0-or-later
// The largest values v of M x = v A x, where A is factorised and M has no negative energy.
#pragma once

#include <Eigen/Core>

#include "solver/base/report.h"
#include "solver/equations/engine.h"

struct spectrum {
    Eigen::VectorXd value;    // v, largest first, all above 0
    Eigen::MatrixXd vectors;  // x, by columns
};

// a: the factor of the matrix. At most so many values; fewer where M has less rank. Each multiple
// eigenvalue comes as often as it is.
spectrum largestvalues(engine& a, const sparsematrix& matrix, const sparsematrix& mass, int wanted,
                       runlog& log);

// Columns of work space that the search needs beside the factor.
int spectrumcolumns(const sparsematrix& mass, int wanted);
