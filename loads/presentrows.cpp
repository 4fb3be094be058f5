// SPDX-License-Identifier: GPL-3.0-or-later
// One pass over the rows of the mode, counted by field.
#include "loads/presentrows.h"

#include <algorithm>
#include <array>

#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/units.h"

namespace {
struct fieldcount {
    int items = 0;
    float least = 0, most = 0;
    void add(float value) {
        least = items == 0 ? value : std::min(least, value);
        most = items == 0 ? value : std::max(most, value);
        ++items;
    }
};
using fieldcounts = std::array<fieldcount, 6>;
}  // namespace

// Marks of the items by number; how many there are.
static int markitems(const attributeform& form, std::vector<char>& chosen) {
    int marked = 0;
    for (std::size_t i = 1; i < form.items.size(); ++i) {
        const double n = numberof(form.items[i]);
        if (form.chosen != 0 && int(i) != form.chosen) continue;
        if (n < 1 || n >= double(chosen.size())) continue;
        chosen[std::size_t(n)] = 1;
        ++marked;
    }
    return marked;
}

static fieldcounts countrows(const std::vector<char>& chosen) {
    fieldcounts counts;
    const auto add = [&](long item, int field, float value) {
        if (item >= 1 && item < long(chosen.size()) && chosen[std::size_t(item)] != 0 &&
            field >= 1 && field <= 6)
            counts[std::size_t(field - 1)].add(value);
    };
    for (int i = 1; editconstraint && i <= ncon; ++i) add(connode(i), condof(i), conval(i));
    for (int i = 1; editnodalload && i <= loadnode(curlc, 0); ++i)
        add(loadnode(curlc, i), loaddof(curlc, i), loadval(curlc, i));
    for (int i = 1; editelemload && i <= int(elemload(curlc, 0, 0)); ++i)
        add(long(elemload(curlc, i, 0)), int(elemload(curlc, i, 1)), elemload(curlc, i, 2));
    return counts;
}

std::string presentrows(const attributeform& form) {
    if (!editconstraint && !editnodalload && !editelemload) return {};
    if (form.listsnodes == bool(editelemload)) return {};  // what is selected takes none of these
    std::vector<char> chosen(std::size_t(editelemload ? nelems() : nnodes()) + 1);
    const int all = markitems(form, chosen);
    if (all == 0) return {};
    const fieldcounts counts = countrows(chosen);
    const auto labels = editconstraint ? constraintlabels() : form.loadlabel;
    std::string text;
    for (std::size_t k = 0; k < counts.size(); ++k) {
        const fieldcount& c = counts[k];
        if (c.items == 0) continue;
        text += (text.empty() ? "" : ", ") +
                labels[k].caption.substr(0, labels[k].caption.find_first_of(" =")) + " " +
                numbertext(c.least);
        if (c.most != c.least) text += " to " + numbertext(c.most);
        if (!unitstext.empty()) text += " " + labels[k].unit;
        if (all > 1) text += " at " + numbertext(c.items) + " of " + numbertext(all);
    }
    if (text.empty()) text = "nothing";
    if (text == "nothing" && all > 1)
        text += " at " + numbertext(all) + (editelemload ? " elements" : " nodes");
    return "At present: " + text;
}
