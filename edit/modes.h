// SPDX-License-Identifier: GPL-3.0-or-later
// The modes that give the presses in a view their meaning, and the selections that serve a dialog.
//
// The modes are a table. A tool adds its row when the program starts; driver and direct commands
// know rows, not tools.
#pragma once

#include <functional>
#include <vector>

#include "core/array.h"

struct moderow {
    Flag* flag = nullptr;    // up while the mode runs
    const char* name = "";   // of the steps that its presses are
    bool snaps = false;      // its points snap
    bool picks = false;      // its presses pick nodes: at once, before any window under way
    bool endsatrest = true;  // the rest state takes the flag down
    std::function<void(int nview)> press;  // left press, snapped: the point is in modelx..; none: a
                                           // state that others keep, and no mode
    std::function<void(double* point)> lastpoint;  // point that a relative command starts from
    std::function<void(double x, double y, double z)> commandpoint;  // a point from a command
    std::function<void()> enter, space;          // Enter restarts where it is told; the space key
    std::function<void()> end;                   // the end by ESC or by another mode
    std::function<void()> back = {};             // Backspace takes the last point back
    std::function<void(int nview)> follow = {};  // the pointer moves: the point is in modelx..
};
// A mode that takes points as presses do: a command's point goes to modelx.. and then to press.
void acceptpoints(moderow& row, void (*press)(int nview));
std::vector<moderow>& modes();
moderow* runningmode();
void endmode();          // the one that runs
const char* stepname();  // of the first row whose flag is up; "" with none

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
void endboxes();  // boxes and windows under way
