// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse driver: presses, drags and keys in a view, and the modes that give them a meaning.
//
// The modes are a table. A tool adds its row when the program starts; driver and direct commands
// know rows, not tools. Starting a mode ends the one that runs.
#pragma once

#include <functional>
#include <vector>

#include "core/array.h"

enum class mousebuttons { none = 0, left = 1, right = 2 };

struct moderow {
    Flag* flag = nullptr;                  // up while the mode runs
    std::function<void(int nview)> press;  // left press: the point is in curx.. modelx..
    std::function<void(int nview)> drag;   // with the left button held
    std::function<void(double x, double y, double z)> commandpoint;  // a point from a command
    std::function<void()> enter, space, end;  // Enter, the space key, the end by ESC
};
std::vector<moderow>& modes();
moderow* runningmode();

// Ends the running mode and returns to the rest state: all mode flags off, Add menu at Ready.
void addready();

// Events of a view; x, y in centimetres from its top left corner.
void viewmousedown(int nview, mousebuttons button, double x, double y);
void viewmousemove(int nview, mousebuttons button, double x, double y);
void viewmouseup(int nview, mousebuttons button, double x, double y);
enum keycodes { keyenter = 13, keyescape = 27, keyspace = 32 };
void keyhandler(int code);

// What a press means, by the mode or else by the selection method.
void mousedriver(int nview, mousebuttons button);
