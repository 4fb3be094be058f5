// SPDX-License-Identifier: GPL-3.0-or-later
// The dotted box that follows the mouse from the corner where a drag began.
#pragma once

void startband(double x, double y);  // corner in centimetres
// Erases the last box and draws the one from the start to scrx, scry in drawcolor.
void rubberband(int nview);
void endband();              // takes the box away
extern double bandx, bandy;  // the corner where it began
