// SPDX-License-Identifier: GPL-3.0-or-later
// BASE.sum: which model the results beside it are of, and what a run found, a table a case.
//
// Line 1 is "static",CHECKSUM,CASES and line 2 "modes",CHECKSUM,MODES; the checksum is "" and the
// count 0 while there are no results of that kind. The tables follow, those of the static cases
// first. A row is a word in quotes and its values.
#pragma once

#include "solver/base/report.h"
#include "solver/results/results.h"

enum class runkind { statics, modes };

// The tables of a run that has been done.
std::string staticsums(const model& m, const settings& s, const results& r, const runlog& log);
std::string modesums(const results& r, const runlog& log);

// Puts the tables of one kind of run into the file; those of the other kind stay.
void writesums(const std::string& base, runkind kind, const std::string& checksum, int count,
               const std::string& tables);
// Takes them out; without the other kind's there is no file.
void dropsums(const std::string& base, runkind kind);
