// SPDX-License-Identifier: GPL-3.0-or-later
// Selecting by properties: numbers, group, type, place, and what hangs together with the selection.
#pragma once

#include <string>
#include <vector>

#include "edit/selection.h"

enum class selectways { number, group, type, coordinate, face, normal, joined };

struct selectquery {
    bool ofnodes = true;  // else of elements; by group, type and what hangs together the nodes of
                          // the elements that are found
    selectways way = selectways::number;
    std::string numbers = {};  // "1-20, 35, 40-60/5", names too
    int group = 1, type = 1;
    int axis = 0;              // 0..2: x y z
    double low = 0, high = 0;  // of elements the middle lies between them, both included
    double angle = 20;         // degrees between normals that are still the same
};

struct selectfound {
    std::vector<int> items;  // ascending
    std::string fault;       // what is wrong with the query, for the user
};
// One pass over the model at most; the selection stays as it is.
selectfound findby(const selectquery& query);

// Makes the items the selection, adds them to it or takes them out of it, and shows it.
void selectlist(bool ofnodes, const std::vector<int>& items, picks mode);
// Brings the selected items into the middle of the active view. False with nothing selected.
bool zoomtoselection();
