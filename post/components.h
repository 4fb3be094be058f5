// SPDX-License-Identifier: GPL-3.0-or-later
// The captions and short labels of what a plot can show.
#pragma once

struct componentrow {
    const char *caption, *label;
    const char* legend;  // text in the legend; empty: the label stands there
};
// Component 1 first: the values of a record, behind them those of post/exactstress.
const int toldcomponents = 13, componentcount = 40;
extern const componentrow stresscomponents[componentcount];
// Directions of displacement: its length, X Y Z, and behind the told ones the rotations.
const int toldirections = 3, directioncount = 7;
struct directionrow {
    const char *caption, *label, *legend;
};
extern const directionrow directions[directioncount];
// In tables and grids; the last is the combined stress.
extern const char* const stresssymbols[13];
