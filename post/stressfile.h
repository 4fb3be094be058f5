// SPDX-License-Identifier: GPL-3.0-or-later
// The stress files of the solver, summed for the current combination into elemstress.
#pragma once

#include <string>

const int stressvalues = 13;  // of a corner's record: components 1..13, the last the combined one
const int stresscorners = 4;  // that elemstress has room for

// Which file is read; stressglobal (1 global, 0 local axes) is the session's.
extern int stressaverage;  // 1 mean of the elements at a node, 0 each element's own
extern int lineelstress;   // 1 line elements, 0 the nodal files
extern bool stresslocal;   // the local axes, whatever stressglobal says
std::string stressfile();  // modelname with .LES, .NSA, .NLA, .NSR or .NSL

// Fills elemstress from that file, combined stress included; nothing is read while stressloaded.
// elemstress(0, e, 0) is the number of records of element e. False after the message of a failed
// read: elemstress is empty then and stressloaded false.
bool readstress();
extern std::string stressnote;  // what the user should know of the file that was read, or nothing
// The same without a message, for the report; what is wrong goes to the status line.
bool readstressquiet();
