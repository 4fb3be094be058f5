// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the model's files: .tek .rot .vpl .knk .mlt .lcd .ell.
#pragma once

#include <string>

#include "core/textfile.h"
#include "solver/base/model.h"
#include "solver/base/report.h"

// Reads the whole set. Without .tek or .mlt there is no model; every other file may be missing and
// leaves its part empty. Each of several processes keeps its part (deal). Throws a refusal that
// names file and line.
model readmodel(const std::string& base, runlog& log);

// The readers of the single files, in the order in which they must run; .tek leaves each process
// its stretch of nodes and elements.
void readtek(textin& in, model& m, runlog& log);
void readrot(textin& in, model& m, runlog& log);
void readmlt(textin& in, model& m, runlog& log);
void readvpl(textin& in, model& m, runlog& log);
void readlcd(textin& in, model& m, runlog& log);
void readknk(textin& in, model& m, runlog& log);
void readell(textin& in, model& m, runlog& log);

// Group of every element exists, every case has its slot. Throws a refusal.
void checkreferences(const model& m);
