// SPDX-License-Identifier: GPL-3.0-or-later
// The view tool bar, and the keys that do the same on the active view.
#pragma once

class QKeyEvent;
class QToolBar;

// Fills the bar. Tools that have a key work by it in the whole window.
void addviewtools(QToolBar* bar);
// Arrows move the active view as its scroll bars do, F6 goes on to the next view. False for other
// keys.
bool isviewkey(const QKeyEvent* event);
