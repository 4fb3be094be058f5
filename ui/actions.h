// SPDX-License-Identifier: GPL-3.0-or-later
// All that can be done by an item or a button, as one table. Menu bar, pop-ups, toolbars, keys,
// scripts and help are made from its rows, which stand in actionrows.cpp,
// viewactions.cpp and resultactions.cpp.
#pragma once

#include <QAction>
#include <QPointer>
#include <functional>
#include <string>
#include <vector>

// Where an action stands beside its menu: a toolbar ("editbar"), the list beside a button of one
// ("filebar/printbutton"), a pop-up ("popup01") or a menu in it ("popup01/Add Graphics").
struct actionplace {
    const char* where;
    int order;                 // along it; each ten begins after a line
    const char* name = "";     // of the button or item there
    const char* caption = "";  // none: the action's own
};

struct action {
    // Of the array in the menu and the place in it, "mnuFileItem(1)", or a name of its own. Scripts
    // call it: "press main NAME"; those in a menu by their captions too: "menu File/Open...".
    std::string name;
    const char* caption = "";  // none: a line between items
    const char* icon = "";
    const char* keys = "";           // joined by "; "
    std::function<void()> run = {};  // none: it is there and disabled
    std::vector<actionplace> places = {};
    std::function<bool()> checked = {};                   // none: it has no check mark
    std::function<bool()> enabled = {};                   // none: always
    const char* tip = "";                                 // none: the caption
    std::function<std::vector<std::string>()> list = {};  // offered beside the button
    std::function<void(int)> runlisted = {};              // with the place in it, from 1
    bool unrecorded = false;                              // a recording has no line of it
    bool isswitch = false;   // what it checks is part of how the session is set
    const char* menu = "";   // captions of the menus above it, joined by "|"
    const char* topic = "";  // of the manual
    const char* why = "";    // it is not allowed when enabled says so
    QPointer<QAction> item = {};
};
std::vector<action>& actions();  // filled by fillactions

// Null where there is none of this name, and before the window is built.
action* findaction(const std::string& name);
QAction* menuaction(const char* array, int index);

// Makes the item of a row: icon, keys, check mark, tip and what it runs.
QAction* makeitem(action& row, QObject* parent);
// Runs a row as a click on it does: under guard, as one step.
void runaction(const action& row);
void runlisted(const action& row, int number);  // with an entry of its list, from 1
// May it be done now?
bool isallowed(const action& row);
// Why it may not; empty where it may.
std::string reasonof(const action& row);
// Its item is enabled or grey; the tip of a grey one has the reason.
void showallowed(const action& row);
// During an analysis, and while a dialog waits for a selection or for nodes, nothing may change the
// model or its files.
bool isheld();
bool islocked(const std::string& menu);
