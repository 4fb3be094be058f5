// SPDX-License-Identifier: GPL-3.0-or-later
// Local axes of elements as values, the two turns of an element's node order, and distributed loads
// that keep their direction in space while the axes they are told in turn.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "tools/graphiclist.h"

using elementaxes = std::array<point3, 3>;  // e1, e2, e3; 0 where the element is degenerate
elementaxes axesofelement(int e);

struct elementloadrow {
    int element, direction;  // local direction 1..3
    double value;
};
// The rows that give a load, told in the axes before, in the axes now: the same direction with
// either sign, or parts along two or three.
std::vector<elementloadrow> turnedload(const elementloadrow& row, const elementaxes& before,
                                       const elementaxes& now);

// Node order of an element: one place on, the first node goes to the end; reversed; and the other
// side up, the order reversed and turned two places, with the rotation angle's sign changed. End
// releases stay with their nodes.
void rotatenodes(int e);
void reversenodes(int e);
void mirrornodes(int e);

// Elements that are turned, and the loads on them.
class turningelements {
  public:
    void keep(int e);  // before the first turn of each
    // Tells the loads on the elements in their new axes, so that each keeps its direction in space.
    // Returns how many rows changed for that; -1, with all elements as they were, when the loads
    // would need more rows than are declared.
    int settle();

  private:
    struct turnedelement {
        int e;
        elementaxes axes;
        std::array<float, 5> row;
        double rotation;
        std::array<float, 14> release;  // of both ends
    };
    struct turnedrows {
        std::vector<elementloadrow> rows;
        int changed = 0;
    };
    void putback() const;
    turnedrows turnedcase(int lc) const;

    std::vector<int> place;  // of each element in the list, -1 for the others
    std::vector<turnedelement> before;
};

// Calls turn(e) for each of these elements; the loads follow. Returns what settle does.
int turnwithloads(const std::vector<int>& meant, const std::function<void(int)>& turn);
