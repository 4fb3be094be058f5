// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of results for a spreadsheet, and the dialog that chooses one. A row goes to the file as
// it is read: the size of a table does not matter.
#pragma once

#include <string>
#include <vector>

#include "exchange/importreport.h"

// What of the results a table holds.
struct tablechoice {
    int table = 0;          // of resulttables
    int block = 0;          // 0 all, else the number of the combination, load case or mode
    bool ofcases = false;   // load cases, not combinations
    bool envelope = false;  // over the combinations of the model's envelope
    int group = 0;          // 0 all: elements of this group, or their nodes
    char separator = ',';
    bool decimalcomma = false;
};

struct tableform {
    std::string path;
    std::vector<std::string> tables, blocks, groups, separators;
    std::vector<int> kinds;  // of resulttables, by entry of tables: those whose file stands
    int chosen = 0, block = 0, group = 0, separator = 0;
    tablechoice choice() const;
};

// Opens the dialog for a file that is to be written; tells where there are no results.
void starttables(const std::string& path);
// The command: asks for the file first.
void asktables();
tableform opentables();
void choosetable(tableform& form, int entry);  // with the blocks that it has
// Writes the table and keeps the choices for the next; a fault is told and the old file stands.
void accepttables(const tableform& form);

// Throws as csvout, and where the file of the results is not whole or not of this model.
void writetable(const std::string& path, const tablechoice& choice, importreport& report);
