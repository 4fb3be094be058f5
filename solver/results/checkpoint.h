// SPDX-License-Identifier: GPL-3.0-or-later
// BASE.ckp: the load cases that an analysis is done with, block by block, so that one that was
// killed goes on from there when it is started again, to the same results.
//
// A line names the analysis: model, settings, program. Each block follows as its size, its bytes
// and their checksum, numbers as the machine holds them. What was cut short counts for nothing.
// Among processes the first reads and writes, and all have what it has.
#pragma once

#include <string>
#include <vector>

#include "solver/base/report.h"
#include "solver/results/stresses.h"

// What an analysis has found of load cases that follow each other.
struct casepart {
    displacements u;
    std::vector<double> residual;  // by case: backward error of the equations
    reactionset reactions;
};

class checkpoint {
  public:
    // name: of the analysis, without line ends; "": nothing is kept or found.
    checkpoint(std::string path, const std::string& name);
    // Blocks that stand there.
    int found() const { return blocks; }
    // The block i of them, from 0, in order; what was told of it is told again.
    casepart take(int i, runlog& log);
    // Adds a block behind the last one, with what was told of it since from. A disc that takes no
    // more is a warning.
    void keep(casepart& part, const runlog::place& from, runlog& log);
    // The results are complete.
    void drop();

  private:
    bool ours() const;
    void scan();
    std::string path, head;
    std::vector<std::int64_t> places;  // of the blocks found, and the end of the last
    int blocks = 0;
    bool writes = false;
};
