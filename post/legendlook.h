// SPDX-License-Identifier: GPL-3.0-or-later
// How a legend looks: its palette, into how many bands it divides the scale, with how many decimals
// it writes, and the limits that were set on it for one quantity. All of it is kept with the model.
#pragma once

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
// What was set on the legend of the quantity on show.
std::optional<scalelimits> legendlimits();
void droplegendlimits();

// One edit by its name and value, as the legend's fields and scripts give it: "max 355", "min 0",
// "auto", "palette even", "bands 8", "decimals 2" or "decimals auto". False with the reason, and
// nothing changed, where it makes no sense; else it is drawn.
bool editlegend(const std::string& what, const std::string& value, std::string& fault);

colour palettecolour(int which, double share);  // share 0..1, lowest first
// The colour for band k of so many, or of the level there; middle is the value that it stands for.
colour legendcolour(int k, int count, double middle, double largest);
// The reader of the section of the model's file.
void wirelegend();
