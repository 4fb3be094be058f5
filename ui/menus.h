// SPDX-License-Identifier: GPL-3.0-or-later
// The menu bar and the pop-ups, built from the table of actions.
#pragma once

#include <QMenuBar>
#include <vector>

#include "ui/actions.h"

void buildmenus(QMenuBar* bar);
void refreshmenus();  // check marks and enabling of all actions, recent list
// The pop-up menu: 1 adds and selects, 2 edits what is selected.
class QMenu;
QMenu* popupmenu(int which, QWidget* parent);
// The action at a path of captions joined by "/", without "&", trailing blanks ignored.
QAction* findmenu(QMenuBar* bar, const QString& path);

// What stands in a toolbar or pop-up, with the menus and lists in it, in its order there.
struct placedaction {
    action* row;
    const actionplace* place;
};
std::vector<placedaction> actionsat(const QString& where);
