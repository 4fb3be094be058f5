// SPDX-License-Identifier: GPL-3.0-or-later
// Deformed shape and mode shapes: the switches of the post-process menu and the combination shown.
#pragma once

void showdeformed();            // toggles the check of Deformed Shape, reads, redraws
void showmode();                // toggles Mode Shape; starts at shape 1
void choosecombination(int c);  // from the main window's list: reads and redraws
void choosemode(int number);    // from the field of the mode shape group

// Reads again whatever is on show; after an analysis.
void rereadshown();
// The post-process routines into the rows and hooks of the floors below.
void wirepost();
