// SPDX-License-Identifier: GPL-3.0-or-later
// The menu tree as one table: menu bar, pop-ups, toolbars and the script player all use its rows.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <functional>
#include <string>
#include <vector>

struct menurow {
    const char* menu;     // captions of the menus above it, joined by "|"
    const char* array;    // name of the item array
    int index;            // in that array
    const char* caption;  // empty: a separator
    const char* icon = "";
    const char* shortcut = "";
    std::function<void()> run = {};      // none: the item is there and disabled
    std::function<bool()> checked = {};  // none: the item has no check mark
    std::function<bool()> enabled = {};  // none: always
    QAction* action = nullptr;
    const char* tip = "";  // beside the item, where its caption promises what it does not do
};
std::vector<menurow>& menus();

void buildmenus(QMenuBar* bar);
void refreshmenus();  // check marks, enabling, recent list
// The pop-up menu: 1 adds and selects, 2 edits what is selected.
class QMenu;
QMenu* popupmenu(int which, QWidget* parent);
// The action of an item, by array and index; null when there is none.
QAction* menuaction(const char* array, int index);
// The action at a path of captions joined by "/", without "&", trailing blanks ignored.
QAction* findmenu(QMenuBar* bar, const QString& path);
