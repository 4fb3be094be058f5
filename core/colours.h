// SPDX-License-Identifier: GPL-3.0-or-later
// The named colours of the system, the contour palette and the two label fonts.
//
// A colour is held as red + 256 green + 65536 blue, the form in which the settings file keeps it.
#pragma once

#include <string>

using colour = int;

constexpr colour rgb(int red, int green, int blue) {
    return red + 256 * green + 65536 * blue;
}
constexpr int redof(colour c) {
    return c & 255;
}
constexpr int greenof(colour c) {
    return (c >> 8) & 255;
}
constexpr int blueof(colour c) {
    return (c >> 16) & 255;
}
// RGB(256 - r, 256 - g, 256 - b), each held within 255.
colour invertcolor(colour c);

colour mixed(colour a, colour b, double share);  // share 0..1 of b

extern colour linecolor, backcolor, meshcolor, nodecolor, patchcolor, selcolor, freecolor,
    graphcolor, concolor, rotcolor, loadcolor, momcolor, edgecolor, defcolor, hidcolor;
extern colour nodelabelcolor, elemlabelcolor;
extern colour drawcolor;  // of the next drawing operation; backcolor erases

struct labelfont {
    std::string name = "Sans Serif";
    bool bold = false, italic = false;
    double size = 8;  // points
    bool underline = false;
};
extern labelfont nodelabelfont, elemlabelfont;
extern int labelsize;  // a number of the label system: spread of a label's characters

// The ground of the views, light or dark, with the colours that are told by it; a colour that the
// user has chosen stays.
void setdarkviews(bool dark);
// Sets every default colour, the group colours and the contour palette.
void initcolors();
colour groupcolorof(long g);  // as delivered
