// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the legend: those groups that have elements on show, as many as there is room for.
#include "view/grouplegend.h"

#include <algorithm>
#include <vector>

#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "core/views.h"
#include "view/drawelems.h"
#include "view/pen.h"
#include "view/surface.h"

static std::vector<int> groupsonshow(int nview) {
    std::vector<char> used(std::size_t(ngroups()) + 1);
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0 && egroup(e) >= 1 && egroup(e) <= ngroups() && isshown(e, nview))
            used[std::size_t(egroup(e))] = 1;
    std::vector<int> list;
    for (int g = 1; g <= ngroups(); ++g)
        if (used[std::size_t(g)]) list.push_back(g);
    return list;
}

void drawgrouplegend(int nview) {
    surface* const s = target(nview);
    if (s == nullptr) return;
    const double margin = 0.4, gap = 0.15, share = 0.35;  // the share of the view's width
    const keptpen pen(s);
    s->font = elemlabelfont;
    s->fillsolid = true;
    s->drawwidth = 1;
    const double height = s->textheight(), line = 1.25 * height;
    const std::vector<int> list = groupsonshow(nview);
    const std::size_t room = std::size_t(std::max(int((viewh - 2 * margin) / line), 1));
    const std::size_t rows = list.size() <= room ? list.size() : room - 1;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < rows; ++i) names.push_back(shownname(groupname(list[i])));
    if (rows < list.size()) names.push_back("+ " + numbertext(int(list.size() - rows)));
    double width = 0;
    for (std::string& name : names)
        width = std::max(width, std::min(s->textwidth(name), share * vieww));
    const double left = vieww - margin - width;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const double y = margin + double(i) * line, x = left - gap - height;
        if (i < rows) {
            const point2 box[] = {
                {x, y}, {x + height, y}, {x + height, y + height}, {x, y + height}};
            s->fillcolor = groupcolor(list[i]);
            s->polygon(box, 4, elemlabelcolor);
        }
        s->textcolor = elemlabelcolor;
        s->moveto(left, y);
        s->text(names[i]);
    }
}
