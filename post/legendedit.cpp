// SPDX-License-Identifier: GPL-3.0-or-later
// Edits of the legend in place.
#include "post/legendedit.h"

#include <cmath>

#include "core/numtext.h"
#include "post/contour.h"
#include "post/legendlook.h"
#include "post/shapes.h"

static bool setbound(bool high, const std::string& value, std::string& fault) {
    double bound = 0;
    if (!readnumber(value, bound)) {
        fault = "\"" + value + "\" is no number";
        return false;
    }
    scalelimits range{indexmin, indexmax};
    (high ? range.high : range.low) = bound;
    if (!arelimits(range.low, range.high)) {
        fault = high ? "The upper limit must lie above the lower one, " + numbertext(indexmin)
                     : "The lower limit must lie below the upper one, " + numbertext(indexmax);
        return false;
    }
    setlegendlimits(legendquantity(), range);
    return true;
}

static bool setwhole(int& number, const std::string& value, int low, int high, std::string& fault) {
    double read = 0;
    if (readnumber(value, read) && read == std::floor(read) && read >= low && read <= high) {
        number = int(read);
        return true;
    }
    fault = "A whole number from " + numbertext(low) + " to " + numbertext(high) +
            " is expected, not \"" + value + "\"";
    return false;
}

static bool setpalette(legendlook& look, const std::string& value, std::string& fault) {
    const int found = findpalette(value);
    if (found < 0) {
        fault = "There is no palette \"" + value + "\"; there are";
        for (const legendpalette& p : palettes()) fault += std::string(" ") + p.name;
        return false;
    }
    look.palette = rememberedpalette = found;
    return true;
}

static bool setnumber(legendlook& look, const std::string& what, const std::string& value,
                      std::string& fault) {
    if (what == "bands") return setwhole(look.bands, value, fewestbands, mostbands, fault);
    if (value != "auto") return setwhole(look.decimals, value, 0, mostdecimals, fault);
    look.decimals = -1;
    return true;
}

bool editlegend(const std::string& what, const std::string& value, std::string& fault) {
    if (what == "max" || what == "min") {
        if (!setbound(what == "max", value, fault)) return false;
    } else if (what == "auto") {
        setlegendlimits(legendquantity(), {});
        indexautoscale = true;
    } else if (what == "palette" || what == "bands" || what == "decimals") {
        legendlook look = lookoflegend();
        const bool good = what == "palette" ? setpalette(look, value, fault)
                                            : setnumber(look, what, value, fault);
        if (!good) return false;
        setlook(look);
    } else {
        fault = "A legend has max, min, auto, palette, bands and decimals, not " + what;
        return false;
    }
    showresults();
    return true;
}
