// SPDX-License-Identifier: GPL-3.0-or-later
// Whole items of the model - a node, an element, a load - with all that belongs to them, and the
// references between them. Everything here goes over the rows of the table; where numbers change,
// the results and the store of the last move, which go by them, are dropped.
#pragma once

#include <string>
#include <vector>

#include "core/modeltable.h"

// New number of each item by its old one; 0 for those that go. Entry 0 is 0.
using newnumbers = std::vector<int>;

// One item: its row in every array of its kind. `list` is the load case of a load.
void copyitem(items of, long from, long to, long list = 0);
void emptyitems(items of, long first, long last, long list = 0);
// Empty ones at the end; returns the number of the first. Throws where there is no room.
int appenditems(items of, long count = 1, long list = 0);
// The highest number that the arrays hold as they are declared.
long roomof(items of, long list = 0);

// Closes up the rows of a kind: each item moves down to its new number, where several have one the
// first of them; what falls free at the end is emptied. Their count follows.
void closeitems(items of, const newnumbers& number);
// The rows in another order: row i takes what was item order[i - 1].
void orderitems(items of, const std::vector<int>& order);

// Everything that refers to the items takes the new numbers; `instead` takes the place of those
// that go where a reference needs one. A list of a selection names each item once.
void followitems(items of, const newnumbers& number, int instead = 0);

// References that name nothing, a line each: "Constraint 3: Node 88 does not exist".
std::vector<std::string> checkreferences();
