// SPDX-License-Identifier: GPL-3.0-or-later
// The move of the selection: reference point, target point or typed way, drag.
#pragma once

#include <functional>

const double dragreach = 0.15;  // centimetres from which a press and release is a drag

// The user chose to move what is selected: the next press is the reference point. A mode that runs
// ends first.
void startmove();
bool ismoving();  // a reference point is awaited or given
// A press or a drag at modelx, modely, modelz while a move is under way.
void movepress(int nview);
bool mousedrag(int nview);  // true when it moves something
void moverelease(int nview);
// A way typed in the coordinate boxes, model units. It needs no reference point.
void movetyped(const double* way);
// Ends the move: prompts and picture, merging of what was moved where it is on. The selection
// stays.
void refreshselection();
// Ends the move; what was pasted or moved is merged where that is on, and stays selected. Before
// tools that add to the model what hangs on the selection.
void settleselection();
// Ends the move and empties the selection; what was pasted or moved is merged where that is on. By
// this routine the user leaves a selection: ESC, another item type, a mode, a paste.
void releaseselection();

// The select menu goes to this item; the selection is released when it changes.
void setselectitem(int item);

// Coordinates are Singles: false for a point that lies beyond them, or at no place at all, after
// the user was told.
bool checkplace(const double* point);
// Calls change(point) with the three coordinates of every selected node and graphic point, and
// stores them as Singles. None is stored where one lies beyond them: false, after it was told.
bool changeselected(const std::function<void(double*)>& change);
