// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse driver: presses, drags and keys in a view, and the modes that give them a meaning.
//
// The modes are a table. A tool adds its row when the program starts; driver and direct commands
// know rows, not tools. Starting a mode ends the one that runs; ESC ends it and returns to the rest
// state.
#pragma once

#include <functional>
#include <vector>

#include "core/array.h"

enum class mousebuttons { none = 0, left = 1, right = 2 };

struct moderow {
    Flag* flag = nullptr;                          // up while the mode runs
    std::function<void(int nview)> press;          // left press, snapped: the point is in modelx..
    std::function<void(double* point)> lastpoint;  // point that a relative command starts from
    std::function<void(double x, double y, double z)> commandpoint;  // a point from a command
    std::function<void()> enter, space;  // Enter restarts where it is told; the space key
    std::function<void()> end;           // the end by ESC or by another mode
    std::function<void()> back = {};     // Backspace takes the last point back
};
std::vector<moderow>& modes();
moderow* runningmode();
// Ends what runs and raises the flag of a mode.
void startmode(Flag& flag);

// Selections that serve a dialog: while the flag is up presses select, and ESC, Enter or the right
// button call ended instead of emptying the lists.
struct pendingselection {
    Flag* flag;
    std::function<void()> ended;
};
std::vector<pendingselection>& pendingselections();

// Ends the running mode and returns to the rest state: all mode flags off, Add menu at Ready.
void addready();
// View Window: a box in one view chooses what another one shows.
void startviewwindow();
void startzoomwindow();

// Events of a view; x, y in centimetres from its top left corner.
void viewmousedown(int nview, mousebuttons button, double x, double y);
void viewmousemove(int nview, mousebuttons button, double x, double y);
void viewmouseup(int nview, mousebuttons button, double x, double y);
enum keycodes { keyback = 8, keyenter = 13, keyescape = 27, keyspace = 32 };
void keyhandler(int code);

// What a press means, by the mode or else by the selection method.
void mousedriver(int nview, mousebuttons button);

// A place of a view's surface becomes the point in work.
void takepoint(int nview, double x, double y);
bool snaps(const moderow& row);  // does the mode take its points through the snap?

// The point in work becomes a new node; drawn at once. Returns its number.
int addnodeat(int nview);
// The mode "Free Node" and the others of this module into the table.
void wiremouse();
