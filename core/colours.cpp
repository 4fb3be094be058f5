// SPDX-License-Identifier: GPL-3.0-or-later
// Default colours.
#include "core/colours.h"

#include <algorithm>
#include <cmath>

#include "core/model.h"

colour linecolor, backcolor, meshcolor, nodecolor, patchcolor, selcolor, freecolor, graphcolor,
    concolor, rotcolor, loadcolor, momcolor, edgecolor, defcolor, hidcolor;
colour nodelabelcolor, elemlabelcolor;
colour drawcolor;
labelfont nodelabelfont, elemlabelfont;
int labelsize = 8;

colour mixed(colour a, colour b, double share) {
    const auto part = [share](int from, int to) {
        return int(std::lround(from + share * (to - from)));
    };
    return rgb(part(redof(a), redof(b)), part(greenof(a), greenof(b)), part(blueof(a), blueof(b)));
}

colour invertcolor(colour c) {
    const auto turned = [](int part) { return std::min(256 - part, 255); };
    return rgb(turned(redof(c)), turned(greenof(c)), turned(blueof(c)));
}

// Colours of groups 0..10; from group 11 on they repeat with period ten.
static const colour firstgroups[] = {rgb(0, 0, 255),   rgb(0, 255, 0), rgb(255, 0, 0),
                                     rgb(0, 0, 200),   rgb(0, 200, 0), rgb(200, 0, 0),
                                     rgb(0, 0, 150),   rgb(0, 150, 0), rgb(150, 0, 0),
                                     rgb(0, 100, 100), rgb(0, 200, 50)};
static const int repeatfrom = 11, period = 10;

// The contour palette, lowest band first.
static const colour palette[] = {rgb(0, 0, 255),  rgb(0, 0, 200), rgb(0, 0, 150), rgb(0, 100, 100),
                                 rgb(0, 200, 50), rgb(0, 255, 0), rgb(100, 0, 0), rgb(150, 0, 0),
                                 rgb(200, 0, 0),  rgb(255, 0, 0)};

colour groupcolorof(long g) {
    return firstgroups[g < repeatfrom ? g : (g - 1) % period + 1];
}

static void initgroupcolors() {
    for (long g = 0; g <= groupcolor.upper; ++g) groupcolor(g) = groupcolorof(g);
    for (long g = 0; g <= std::min(groupshow.upper, 9L); ++g) groupshow(g) = palette[g];
    for (long g = repeatfrom; g <= groupshow.upper; ++g) groupshow(g) = groupshow(g - period);
}

void initcolors() {
    linecolor = rgb(0, 150, 255);
    backcolor = rgb(255, 255, 255);
    meshcolor = rgb(0, 0, 0);
    nodecolor = rgb(0, 0, 255);
    patchcolor = rgb(0, 255, 0);
    selcolor = rgb(255, 0, 0);
    freecolor = rgb(0, 0, 255);
    graphcolor = rgb(0, 255, 0);
    concolor = rgb(255, 0, 255);
    rotcolor = rgb(0, 255, 255);
    loadcolor = rgb(255, 100, 0);
    momcolor = rgb(0, 100, 255);
    edgecolor = rgb(0, 0, 255);
    defcolor = rgb(0, 0, 255);
    nodelabelcolor = rgb(0, 0, 0);
    elemlabelcolor = rgb(0, 0, 0);
    initgroupcolors();
    hidcolor = backcolor;
}

static const colour darkground = rgb(28, 30, 34), brightblue = rgb(110, 160, 255),
                    brighttext = rgb(225, 228, 232), lightground = rgb(255, 255, 255),
                    blue = rgb(0, 0, 255), black = rgb(0, 0, 0);

static const struct {
    colour *value, light, dark;
} grounds[] = {{&backcolor, lightground, darkground},   {&hidcolor, lightground, darkground},
               {&meshcolor, black, rgb(205, 208, 214)}, {&nodecolor, blue, brightblue},
               {&freecolor, blue, brightblue},          {&edgecolor, blue, brightblue},
               {&defcolor, blue, brightblue},           {&nodelabelcolor, black, brighttext},
               {&elemlabelcolor, black, brighttext}};

void setdarkviews(bool dark) {
    for (const auto& row : grounds)
        if (*row.value == (dark ? row.light : row.dark)) *row.value = dark ? row.dark : row.light;
}
