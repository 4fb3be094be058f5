// SPDX-License-Identifier: GPL-3.0-or-later
// Printing of the views on show: the same layers as on the screen, drawn on the printer's surface.
#pragma once

#include <string>

struct surface;

// The command Print: print dialog, page, and what went wrong.
void menuprint();

// Draws the page on the platform's printer surface: one view over the whole of it, or the four in
// two rows, and the foot line. Lines, fonts, symbols and the unit vector keep their centimetres;
// the model is scaled to the paper. Views and colours are as before afterwards.
void printview();

// A page on any surface.
struct pagecontent {
    int nview = 0;               // the view alone; 0: all on show, as they are laid out
    bool foot = true;            // the line with model and date
    bool screencolours = false;  // else as on paper
};
void drawpage(surface& page, const pagecontent& what);
// Height of a page of this width on which the views have their shape of the screen, centimetres.
double pageheight(const pagecontent& what, double width);

// The left part of the foot line: model, combination or mode on show.
std::string footleft();
