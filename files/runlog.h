// SPDX-License-Identifier: GPL-3.0-or-later
// The log that the solver leaves beside the model, and whether results are older than the model.
#pragma once

#include <string>

struct runlog {
    std::string path;
    int warnings = 0;  // lines "Warning: ..."
};
// Of the last analysis of the model in hand; empty before one.
const runlog& solverlog();
// The results beside a model are of another one than its files tell: their sums name its checksum.
bool areresultsold(const std::string& base);
void readsolverlog();    // of modelname, after a run
void forgetsolverlog();  // another model takes its place
