// SPDX-License-Identifier: GPL-3.0-or-later
// The toolbars of the main window, made from a plan.
#pragma once

#include <QToolBar>

#include "ui/toolbarset.h"

class QMainWindow;

// Fills a bar with the buttons of its plan; what stood there goes, but widgets of the window's own
// stay at the end.
void Toolbaradd(QToolBar* bar, const toolbarplan& plan);
// Adds an empty bar with its caption where the plan has it: it can be moved, docked and floated.
QToolBar* Coolbaradd(QMainWindow* window, const toolbarplan& plan);
// Shows all bars of the window as the set tells.
// What does not fit into one row above the views stands in a second one; rows that the user has
// made stay as they are.
void wraptoolbars(QMainWindow* window);
void showtoolbars(QMainWindow* window, const toolbarset& set);
