// SPDX-License-Identifier: GPL-3.0-or-later
// Names and numbers by instance.
#include "exchange/deckspaces.h"

#include <cmath>

#include "core/numtext.h"
#include "exchange/textlines.h"

void deckspaces::enter(std::string_view instance, std::string_view part, const placement& place) {
    where = uppercase(instance);
    shownas = instance;
    ofpart = part;
    stand = place;
    spaces[where];
}

std::string deckspaces::whole(std::string_view name) const {
    return (where.empty() ? "" : where + ".") + uppercase(name);
}

std::string deckspaces::named(std::string_view group) const {
    return (ofpart.empty() ? "" : ofpart + " ") + std::string(group);
}

std::string deckspaces::nodename(long number) const {
    return (shownas.empty() ? "" : shownas + ".") + numbertext(number);
}

const std::vector<int>* deckspaces::find(const itemsets& sets, std::string_view name) const {
    const std::string inner = (looking.empty() ? where : looking) + "." + uppercase(name);
    auto at = sets.find(inner);
    if (at == sets.end()) at = sets.find(uppercase(name));
    return at == sets.end() ? nullptr : &at->second;
}

bool deckspaces::numbered(std::string_view text, bool ofnodes, int& item) {
    const std::size_t point = text.rfind('.');
    space* of = &here();
    if (point != text.npos) {
        const auto at = spaces.find(uppercase(text.substr(0, point)));
        if (at == spaces.end()) return false;
        of = &at->second;
        text.remove_prefix(point + 1);
    }
    long number = 0;
    if (!readwholenumber(text, number)) return false;
    item = (ofnodes ? of->nodes : of->elements).find(number);
    return true;
}

bool deckspaces::look(std::string_view instance) {
    looking = uppercase(instance);
    if (looking.empty() || spaces.contains(looking)) return true;
    looking.clear();
    return false;
}

// Rodrigues' formula.
placement turnedabout(const triple& a, const triple& b, double radians) {
    placement p;
    triple u = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const double length = std::hypot(u[0], u[1], u[2]);
    if (!(length > 0) || !std::isfinite(radians)) return p;
    for (double& v : u) v /= length;
    const double c = std::cos(radians), s = std::sin(radians);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3, k = (i + 2) % 3;
        p.axes[i][i] = c + u[i] * u[i] * (1 - c);
        p.axes[i][j] = u[i] * u[j] * (1 - c) + u[k] * s;
        p.axes[i][k] = u[i] * u[k] * (1 - c) - u[j] * s;
    }
    const triple moved = p(a);
    for (std::size_t k = 0; k < 3; ++k) p.origin[k] = a[k] - moved[k];
    return p;
}
