// SPDX-License-Identifier: GPL-3.0-or-later
// How supports, loads, members and labels are drawn beside the plain way: choices of the session,
// none of the model.
#pragma once

struct symbolstyle {
    bool field = false;   // pins, rollers, clamps, arrows; else strokes
    bool values = false;  // numbers beside loads and moved supports
    bool solid = false;   // members with their sections, plates with their thickness
    bool legend = true;   // names of the groups, while groups are told by colours
    bool apart = false;   // labels that would cover another one move aside or stay away
    int size = 100;       // percent, of symbols on the screen
    bool operator==(const symbolstyle&) const = default;
};
extern symbolstyle symbolsdrawn;

const int leastsymbols = 25, mostsymbols = 400;  // percent
// unitveclen in the size chosen for symbols: centimetres.
double symbollength();
