// SPDX-License-Identifier: GPL-3.0-or-later
// The item under the pointer.
#pragma once

// The item that a press would pick is shown as long as the pointer rests over it, its number in
// the status line. x, y in centimetres on the surface of the view.
void hover(int nview, double x, double y);
void endhover();
