// SPDX-License-Identifier: GPL-3.0-or-later
// Diagrams of forces and deflections along line elements in the views, and the true curve of
// deformed ones. State: the choices, and the range of what is on show.
#pragma once

#include <string>

#include "core/diagramshown.h"
#include "post/members.h"

struct surface;

struct diagramchoice {
    memberquantity quantity = memMz;
    bool filled = true, values = true;
    bool selected = false;  // of the selected elements alone
    double scale = 1;       // 1: the largest value measures twice the unit vector's length
};
extern diagramchoice diagram;

// The members on show and their range; before a redraw.
void preparediagrams();
std::string diagramnote();  // what is missing
// Layer of the diagrams of a view.
void drawdiagrams(int nview);
// On, of the quantity last chosen or, where that is nothing but rounding, of a moment or force.
void startdiagram();
const memberrange& diagramrange();  // of the members on show
std::string diagramtext(
    int nview = 1);  // "Mz, Moment about e3: 12.5 in element 3 to -7 in element 9"

// Side of the member on which a positive value is drawn: +1 along the axis, -1 against it. Moments
// stand where the fibres are in tension.
struct diagramside {
    int axis, sign;  // 2 along e2, 3 along e3
};
diagramside sideof(memberquantity q);

// Stations of a curve that a picture needs: those between lie within the tolerance of the straight
// line. from[0..memberstations-1]; writes indices, returns how many.
int neededstations(const float* from, double tolerance, int* indices);

// A deformed line element as it bends, where the results on show tell it; false where they do not
// and a straight line serves.
bool drawcurvedmember(int e, int nview);
