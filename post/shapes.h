// SPDX-License-Identifier: GPL-3.0-or-later
// The post-process menu: which results are on show, of which combination or mode.
#pragma once

#include <functional>
#include <string>
#include <vector>

void showdeformed();       // toggles Deformed Shape, reads, redraws
void showcontour();        // toggles Contour plot; Element Stress goes off
void showmode();           // toggles Mode Shape; starts at shape 1
void showelementstress();  // toggles Element Stress; Contour plot goes off
// Switches beyond: the even palette, marks at highest and lowest, the value under the pointer.
void toggleswitch(bool& on);

void choosecombination(int c);  // from the main window's list: reads and redraws
// A load case or an envelope in the combination's place, or back to it.
struct resultsource;
void choosesource(const resultsource& source);
void choosemode(int number);  // from the list of the mode shape group
// What the group's field holds: a number other than that of the shape on show; any other text
// changes nothing.
void typemode(const std::string& text);

// Prepares and draws what is on show.
void showresults();
// A window beside the views that shows values of the plot follows it; empty while there is none.
extern std::function<void()> resultschanged;
void readfield();  // displacements or the mode of what is on show
// Reads again whatever is on show; the second after an analysis.
void readshown();
void rereadshown();

// "Mode shape 2 of 10: 12.5 Hz" while one is on show; "" otherwise.
std::string modetext();
// What the picture of a view says of the results on show beside their values: that they are older
// than the model or not whole, and how much larger a shape is drawn.
std::vector<std::string> picturenotes(int nview);
// "1: 12.5 Hz" for each mode of the file last read.
std::vector<std::string> modelist();

// Results are on show, and the model differs from the one that they were computed from.
bool isstaleshown();

// The post-process routines into the rows and hooks of the floors below.
void wirepost();
