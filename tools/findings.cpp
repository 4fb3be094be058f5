// SPDX-License-Identifier: GPL-3.0-or-later
// The list of findings.
#include "tools/findings.h"

#include <cstdio>

#include "core/numtext.h"
#include "core/platform.h"

static const std::size_t mostlines = 25;  // of single ones below a heading

std::string nodetext(int n) {
    return "Node " + numbertext(n);
}

std::string elementtext(int e) {
    return "Element " + numbertext(e);
}

std::string shortfigure(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", value);
    return text;
}

void findinglist::add(const findingkind& kind, std::size_t count,
                      const std::function<finding(std::size_t)>& single) {
    if (count == 0) return;
    finding heading{
        numbertext(long(count)) + " " + (count == 1 ? kind.one : kind.many) + ": " + kind.remedy,
        true, kind.grave};
    std::vector<finding> below;
    for (std::size_t i = 0; i < count; ++i) {
        finding f = single(i);
        heading.nodes.insert(heading.nodes.end(), f.nodes.begin(), f.nodes.end());
        heading.elements.insert(heading.elements.end(), f.elements.begin(), f.elements.end());
        f.grave = kind.grave;
        if (i < mostlines) below.push_back(std::move(f));
    }
    lines.push_back(std::move(heading));
    lines.insert(lines.end(), below.begin(), below.end());
    if (count > mostlines)
        lines.push_back({"and " + numbertext(long(count - mostlines)) +
                             " more, which the heading selects with these",
                         false, kind.grave});
}

void findinglist::add(const findingkind& kind, const std::vector<finding>& singles) {
    add(kind, singles.size(), [&](std::size_t i) { return singles[i]; });
}

void tellcheckprogress(double share) {
    if (!theplatform().progress("Check model", share)) throw checkcancelled{};
}

std::vector<finding> findfaults(bool& whole) {
    findinglist list;
    whole = true;
    try {
        findmeshfaults(list);
        findjobfaults(list);
    } catch (const checkcancelled&) {
        whole = false;
    }
    theplatform().endprogress();
    return list.lines;
}
