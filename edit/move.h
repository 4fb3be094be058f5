// SPDX-License-Identifier: GPL-3.0-or-later
// The move of the selection: reference point, target point or typed way, drag, and the one step
// back.
#pragma once

// The user chose to move what is selected: the next press is the reference point.
void startmove();
bool ismoving();  // a reference point is awaited or given
// A press or a drag at modelx, modely, modelz while a move is under way.
void movepress(int nview);
void movedrag(int nview);
void moverelease(int nview);
// A way typed in the coordinate boxes, model units.
void movetyped(const double* way);
// Ends the move: prompts and picture, merging of nodes where it is on. Runs on each change of mode.
void refreshselection();

// Shifts every selected node and graphic point, in Single.
void shiftselection(double dx, double dy, double dz);
// The places of the selection before the last move.
void storeundo();
void editundo();
