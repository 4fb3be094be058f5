// SPDX-License-Identifier: GPL-3.0-or-later
// The room edit: mouse, keys and typed commands; picking (find), snap, selection; move, copy,
// merge, refine, renumber.
//
// The mouse driver: presses, drags and keys in a view, and the modes that give them a meaning.
//
// It knows the rows of edit/modes.h, not tools. Starting a mode ends the one that runs; ESC ends it
// and returns to the rest state.
#pragma once

#include <functional>
#include <vector>

#include "core/array.h"
#include "edit/find.h"
#include "edit/modes.h"
#include "edit/selection.h"

enum class mousebuttons { none = 0, left = 1, right = 2 };

// Ends what runs and raises the flag of a mode.
void startmode(Flag& flag);

// View Window: a box in one view chooses what another one shows.
void startviewwindow();
void startzoomwindow();

// The pop-up menu of a view; false while something is under way that a right press would end.
bool showviewmenu(int nview);

// Events of a view; x, y in centimetres from its top left corner.
void viewmousedown(int nview, mousebuttons button, double x, double y);
void viewmousemove(int nview, mousebuttons button, double x, double y);
void viewmouseup(int nview, mousebuttons button, double x, double y);
enum keycodes { keyback = 8, keyenter = 13, keyescape = 27, keyspace = 32 };
void keyhandler(int code);

// A press of the left button at a model point in the active view: picking by the keyboard.
void pressat(double x, double y, double z);

void promptselected();  // the prompts of the rest state, with or without a selection

// What a press means, by the mode or else by the selection method.
void mousedriver(int nview, mousebuttons button);

// The point in work becomes a new node; drawn at once. Returns its number.
int addnodeat(int nview);
// The mode "Free Node" and the others of this module into the table.
void wiremouse();
