// SPDX-License-Identifier: GPL-3.0-or-later
// How a legend looks: its palette, into how many bands it divides the scale, with how many decimals
// it writes, and the limits that were set on it for one quantity. All of it is kept with the model.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/colours.h"

struct legendpalette {
    const char *name, *caption, *tip;  // name: in files and scripts
    std::vector<colour> colours;       // lowest first; none: those of the settings
    bool centred = false;              // the colour in the middle stands for 0
};
const std::vector<legendpalette>& palettes();
int findpalette(const std::string& name);  // -1 for none

struct legendlook {
    int palette = 0;    // place in palettes()
    int bands = 10;     // fewestbands..mostbands
    int decimals = -1;  // 0..mostdecimals; below 0 as many as tell neighbouring values apart
};
const int fewestbands = 2, mostbands = 20, mostdecimals = 6;

legendlook lookoflegend();     // of the model, or the user's own where it says nothing
extern int rememberedpalette;  // the user's own

struct scalelimits {
    double low = 0, high = 0;
};
bool arelimits(double low, double high);
// What was set on the legend of a quantity; nothing: its scale follows the values.
std::optional<scalelimits> legendlimits(const std::string& quantity);
void setlegendlimits(const std::string& quantity, const std::optional<scalelimits>& limits);
// The model has other units.
void convertlimits(const std::function<double(const std::string& quantity)>& factorof);
void setlook(const legendlook& look);

colour palettecolour(int which, double share);  // share 0..1, lowest first
// The colour for band k of so many, or of the level there; middle is the value that it stands for.
colour legendcolour(int k, int count, double middle, double largest);
// The reader of the section of the model's file.
void wirelegend();
