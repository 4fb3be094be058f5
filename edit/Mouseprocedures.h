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
#include "edit/find.h"
#include "edit/selection.h"

enum class mousebuttons { none = 0, left = 1, right = 2 };

struct moderow {
    Flag* flag = nullptr;                          // up while the mode runs
    std::function<void(int nview)> press;          // left press, snapped: the point is in modelx..
    std::function<void(double* point)> lastpoint;  // point that a relative command starts from
    std::function<void(double x, double y, double z)> commandpoint;  // a point from a command
    std::function<void()> enter, space;          // Enter restarts where it is told; the space key
    std::function<void()> end;                   // the end by ESC or by another mode
    std::function<void()> back = {};             // Backspace takes the last point back
    std::function<void(int nview)> follow = {};  // the pointer moves: the point is in modelx..
};
// A mode that takes points as presses do: a command's point goes to modelx.. and then to press.
void takepoints(moderow& row, void (*press)(int nview));
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
bool isselectionpending();
bool endpendingselection();  // as ESC does; false when no dialog waits for one

// Ends the running mode and returns to the rest state: all mode flags off, Add menu at Ready.
void addready();
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

// What a press means, by the mode or else by the selection method.
void mousedriver(int nview, mousebuttons button);

// Parts of the driver that the highlight shares.
void takepoint(int nview, double x, double y);  // a place in a view becomes the point in work
void projectplace(int nview, double x, double y, double z);  // a model point, projected
bool snaps(const moderow& row);                              // do the points of this mode snap?

// The point in work becomes a new node; drawn at once. Returns its number.
int addnodeat(int nview);
// The mode "Free Node" and the others of this module into the table.
void wiremouse();
