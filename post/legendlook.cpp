// SPDX-License-Identifier: GPL-3.0-or-later
// The look of the legend. It lives in the model's further data, section "legend":
//
//     "look","even",8,2         palette, bands, decimals
//     "limits","SX",-100,250.5  quantity, lowest, highest
#include "post/legendlook.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "files/kalfile.h"

static const char* const legendsection = "legend";

int rememberedpalette;

const std::vector<legendpalette>& palettes() {
    static const std::vector<legendpalette> list = {
        {"settings", "Settings", "The ten colours of the settings", {}, false},
        // At even distances along a path in CIELAB (D65): blue, green, gold, each lighter than the
        // one before, so that order and steps are seen, in print and by the colour-blind too; the
        // lightest still stands out from white paper.
        {"even",
         "Even",
         "Colours in even steps of brightness",
         {rgb(14, 57, 133), rgb(14, 75, 125), rgb(18, 101, 129), rgb(23, 132, 135),
          rgb(27, 155, 128), rgb(30, 170, 109), rgb(83, 181, 86), rgb(143, 188, 72),
          rgb(195, 193, 69), rgb(243, 195, 81)},
         false},
        // Both arms darken alike from the middle, so that equal sizes look equal.
        {"diverging",
         "Diverging",
         "Blue below 0, red above 0, pale at 0",
         {rgb(19, 58, 130), rgb(52, 116, 178), rgb(138, 184, 216), rgb(226, 226, 222),
          rgb(234, 164, 138), rgb(202, 82, 66), rgb(138, 14, 36)},
         true},
        {"grey",
         "Grey",
         "From light to dark grey, for black and white print",
         {rgb(226, 226, 226), rgb(32, 32, 32)},
         false},
    };
    return list;
}

int findpalette(const std::string& name) {
    for (std::size_t i = 0; i < palettes().size(); ++i)
        if (name == palettes()[i].name) return int(i);
    return -1;
}

// --- the section --------------------------------------------------------------------------------

namespace {
struct legendrows {
    std::optional<legendlook> look;
    std::map<std::string, scalelimits> limits;  // by quantity
};
}  // namespace

static legendlook readlook(textin& in) {
    legendlook look;
    const std::string name = in.text();
    look.palette = findpalette(name);
    if (look.palette < 0) in.fail(errtype, "there is no palette \"" + name + "\"");
    look.bands = in.wholewithin(fewestbands, mostbands, "a number of bands");
    look.decimals = in.wholewithin(-1, mostdecimals, "a number of decimals");
    return look;
}

bool arelimits(double low, double high) {
    return low < high && std::fabs(low) <= std::numeric_limits<float>::max() &&
           std::fabs(high) <= std::numeric_limits<float>::max();
}

static legendrows readrows(textin& in) {
    legendrows rows;
    while (!in.atend()) {
        const std::string word = in.text();
        if (word == "look") {
            rows.look = readlook(in);
        } else if (word == "limits") {
            const std::string quantity = in.text();
            const double low = in.number(), high = in.number();
            if (!arelimits(low, high))
                in.fail(errtype, "the limits of a legend stand the wrong way round");
            rows.limits[quantity] = {low, high};
        } else {
            in.fail(errtype, R"("look" or "limits" was expected, found ")" + word + "\"");
        }
    }
    return rows;
}

// Read anew where the section has become another: by an edit, a step back, another model.
static const legendrows& rowsnow() {
    static std::string text;
    static legendrows rows;
    if (const std::string now = kalsection(legendsection); now != text) {
        textin in = kalreader(legendsection);
        rows = readrows(in);
        text = now;
    }
    return rows;
}

static void writerows(const legendrows& rows) {
    std::string text;
    if (rows.look)
        text += std::string("\"look\",\"") + palettes()[std::size_t(rows.look->palette)].name +
                "\"," + numbertext(rows.look->bands) + "," + numbertext(rows.look->decimals) + "\n";
    for (const auto& [quantity, range] : rows.limits)
        text += "\"limits\",\"" + quantity + "\"," + numbertext(range.low) + "," +
                numbertext(range.high) + "\n";
    const step s("Legend", reaches::texts);
    putkalsection(legendsection, text);
}

void wirelegend() {
    checkkalsection(legendsection, [](textin& in) { readrows(in); });
}

// --- what is in force ---------------------------------------------------------------------------

legendlook lookoflegend() {
    if (rowsnow().look) return *rowsnow().look;
    legendlook look;
    look.palette = rememberedpalette;
    return look;
}

std::optional<scalelimits> legendlimits(const std::string& quantity) {
    const auto& limits = rowsnow().limits;
    const auto found = limits.find(quantity);
    if (found == limits.end()) return {};
    return found->second;
}

void setlegendlimits(const std::string& quantity, const std::optional<scalelimits>& limits) {
    legendrows rows = rowsnow();
    if (limits)
        rows.limits[quantity] = *limits;
    else if (rows.limits.erase(quantity) == 0)
        return;
    writerows(rows);
}

void convertlimits(const std::function<double(const std::string& quantity)>& factorof) {
    legendrows rows = rowsnow();
    for (auto& [quantity, range] : rows.limits) {
        const double factor = factorof(quantity);
        range = {range.low * factor, range.high * factor};
    }
    if (!rows.limits.empty()) writerows(rows);
}

void setlook(const legendlook& look) {
    legendrows rows = rowsnow();
    rows.look = look;
    writerows(rows);
}

static colour colourat(const std::vector<colour>& list, double t) {
    const double place = std::clamp(t, 0.0, 1.0) * double(list.size() - 1);
    const std::size_t i = std::min(std::size_t(place), list.size() - 2);
    return mixed(list[i], list[i + 1], place - double(i));
}

colour palettecolour(int which, double share) {
    const std::vector<colour>& own = palettes()[std::size_t(which)].colours;
    if (!own.empty()) return colourat(own, share);
    const int ten = 10;  // of the settings
    std::vector<colour> list;
    for (int i = 0; i < ten; ++i) list.push_back(colour(groupshow(i)));
    return colourat(list, share);
}

colour legendcolour(int k, int count, double middle, double largest) {
    const int which = lookoflegend().palette;
    if (palettes()[std::size_t(which)].centred && largest > 0)
        return palettecolour(which, (1 + middle / largest) / 2);
    return palettecolour(which, count > 1 ? double(k) / (count - 1) : 0);
}
