// SPDX-License-Identifier: GPL-3.0-or-later
// Keys of the active view that are no action's.
#pragma once

class QKeyEvent;

// Arrows move the active view as its scroll bars do, F6 goes on to the next view. False for other
// keys.
bool isviewkey(const QKeyEvent* event);
