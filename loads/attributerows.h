// SPDX-License-Identifier: GPL-3.0-or-later
// The rewrite of boundary condition rows: for each item the filled fields take its rows in their
// order, rows left over become holes (item 0), fields left over are appended.
//
// items are node or element numbers; numbers that are not in the model are passed over. One call
// is one pass over the rows, whatever the number of items.
#pragma once

#include <string>
#include <vector>

// A field of the dialog; number i, from 1, is the degree of freedom or direction of its row.
struct fieldtext {
    std::string caption, text;  // an empty text means no row
    std::string formula = "";   // of its units
};
using fieldtexts = std::vector<fieldtext>;

// Why a value with a unit can not be taken, "" where all can.
std::string faultofunits(const fieldtexts& fields);

// Throw errtype where a field holds no number, erroverflow where it is too large, errsubscript
// where the rows exceed modelsize(sizeconditions); nothing is changed then.
void rewriteconstraints(const std::vector<int>& items, const fieldtexts& fields);
void rewritenodalloads(int lc, const std::vector<int>& items, const fieldtexts& fields);
// Stops without a word at a field that holds no number: the fields before it are stored, the rest
// of the rows stays.
void rewriteelementloads(int lc, const std::vector<int>& items, const fieldtexts& fields);
