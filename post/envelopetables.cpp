// SPDX-License-Identifier: GPL-3.0-or-later
// Tables of envelopes, from the rows of the result files.
#include "post/envelopetables.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/model.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "post/memberfile.h"
#include "post/plainnumber.h"
#include "post/source.h"

const envelopekind envelopekindsoftables[4] = {
    {envelopeof::displacements, "Displacements, rotations in degrees"},
    {envelopeof::forces, "Forces at supports"},
    {envelopeof::plates, "Plates, local axes"},
    {envelopeof::members, "Line elements"}};

std::string envelopecaption() {
    const int count = int(envelopeset().size());
    return "Envelope of " + numbertext(count) + (count == 1 ? " combination" : " combinations");
}

static std::vector<char> supportednodes() {
    std::vector<char> held(std::size_t(nnodes()) + 1);
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) >= 1 && connode(i) <= nnodes()) held[std::size_t(connode(i))] = 1;
    return held;
}

static bool areelements(envelopeof what) {
    return what == envelopeof::plates || what == envelopeof::members;
}

// Runs take(item) over those that a table tells: of forces the nodes that are held.
template <typename Take>
static void eachitem(enveloperows& rows, envelopeof what, Take take) {
    const std::vector<char> held = supportednodes();
    enveloped item;
    while (rows.next(item))
        if (what != envelopeof::forces || held[std::size_t(item.item)]) take(item);
}

// What is nothing beside values of its unit is 0.
static void dropnoise(std::vector<envelopebounds>& bounds, const std::vector<std::string>& units) {
    const double nothing = 1e-9;
    std::map<std::string, double> most;
    for (std::size_t q = 0; q < bounds.size(); ++q)
        most[units[q]] = std::max(most[units[q]], std::fabs(bounds[q].bysize().value));
    for (std::size_t q = 0; q < bounds.size(); ++q)
        for (envelopeplace* const at : {&bounds[q].high, &bounds[q].low})
            if (std::fabs(at->value) < nothing * most[units[q]]) at->value = 0;
}

std::vector<boundstable> boundstables(const envelopekind& kind, const std::function<void()>& look) {
    const int itemsperlook = 10000;
    std::map<int, std::vector<envelopebounds>> bygroup;
    enveloperows rows(kind.of, weighedset());
    int count = 0;
    eachitem(rows, kind.of, [&](const enveloped& item) {
        if (++count % itemsperlook == 0) look();
        includeitem(bygroup[areelements(kind.of) ? egroup(item.item) : 0], item);
    });
    std::vector<boundstable> tables;
    for (auto& [g, bounds] : bygroup) {
        dropnoise(bounds, rows.units());
        std::string caption = kind.caption;
        if (g >= 1 && g <= ngroups()) caption += ", group " + shownname(groupname(g), 40);
        tables.push_back({caption, rows.headings(), std::move(bounds)});
    }
    return tables;
}

std::string placeof(envelopeof what, const envelopeplace& at) {
    if (!areelements(what)) return "node " + numbertext(at.item);
    const std::string element = "element " + numbertext(at.item);
    if (what == envelopeof::plates)
        return element + ", node " + numbertext(int(elems(at.item, at.place)));
    return element + " at " + shorttext(double(at.place - 1) / (memberstations - 1));
}

static enveloperowof worstalong(const enveloped& member) {
    std::vector<envelopebounds> bounds;
    includeitem(bounds, member);
    enveloperowof row{member.item, 0, {}};
    for (const envelopebounds& b : bounds)
        row.values.push_back({float(b.high.value), float(b.low.value), short(b.high.combination),
                              short(b.low.combination)});
    return row;
}

void eachenvelope(envelopeof what,
                  const std::function<void(const std::vector<std::string>&)>& begin,
                  const std::function<void(const enveloperowof&)>& take) {
    enveloperows rows(what, weighedset());
    begin(rows.headings());
    eachitem(rows, what, [&](const enveloped& item) {
        if (what == envelopeof::members) return take(worstalong(item));
        for (std::size_t p = 0; p < item.places.size(); ++p) {
            const bool corner = what == envelopeof::plates;
            take({corner ? item.item : 0, corner ? int(elems(item.item, long(p) + 1)) : item.item,
                  item.places[p]});
        }
    });
}
