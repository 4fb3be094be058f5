// SPDX-License-Identifier: GPL-3.0-or-later
// The legend of a plot, the stress index: what is shown, ten colours and their values.
#pragma once

#include <string>
#include <vector>

struct surface;

struct legendtext {
    std::string title;                 // of the frame
    std::vector<std::string> heading;  // lines above the scale
    // Values over 10^exponent, lowest first: with lines the ten levels, with filled bands the
    // eleven bounds.
    std::vector<std::string> labels;
    int exponent = 0;
    std::string tail;  // " E3", under the scale
};
legendtext makelegend();
// Is the legend on show? While a plot is.
bool legendshown();

// Draws it on the platform's legend surface; nothing while drawing goes to the printer.
void drawlegend();
// On a surface, in the rectangle from its top left corner, centimetres.
void drawlegendon(surface& s, double left, double top, double width, double height);

// What lies at a place of the legend on the screen, centimetres: its bounds can be typed over.
enum class legendparts { none, scale, most, least };
legendparts legendpartat(double x, double y);
struct legendfield {
    double left, top, width, height;
};
legendfield fieldoflegend(legendparts part);  // where most or least stands

std::string plotnumber(double value);  // four digits; what is nothing beside the scale is 0
// "12.5 Hz" of a mode's omega^2. One below 0 is no vibration: the structure gives way in this
// shape.
std::string frequencytext(double value);
