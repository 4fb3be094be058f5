// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the files in tests/exchange/samples, and what is asked of every format.
#pragma once

#include <cmath>

#include "core/catalogue.h"
#include "exchange/formats.h"
#include "exchange/gate.h"
#include "tests/support/recorder.h"

inline std::string samplepath(const std::string& name) {
    return sourcedir() + "/tests/exchange/samples/" + name;
}

// A session that knows the foreign formats, and takes files as the File menu does.
struct exchangeroom : sessionroom {
    exchangeroom() { wireexchange(); }
    ~exchangeroom() { fileformats().clear(); }
    reply open(const std::string& path) { return openfile(path); }
    reply import(const std::string& path) {
        platform.filequeue.push_back({true, path, 1});
        return menuimport();
    }
};

// The node at a place, 0 for none.
inline int nodeat(double x, double y, double z, double near = 1e-6) {
    for (int n = 1; n <= nnodes(); ++n)
        if (std::abs(nodes(0, n, 0) - x) <= near && std::abs(nodes(0, n, 1) - y) <= near &&
            std::abs(nodes(0, n, 2) - z) <= near)
            return n;
    return 0;
}

inline int countoftype(int type) {
    int count = 0;
    for (int e = 1; e <= nelems(); ++e) count += int(elems(e, 0)) == type;
    return count;
}

// A line of the last report of this kind that holds the text.
inline const reportline* reported(reportkinds kind, const std::string& part) {
    for (const reportline& line : lastreport().lines())
        if (line.kind == kind && textof(line).find(part) != std::string::npos) return &line;
    return nullptr;
}

// What a reader hands on refers to nothing that is not there.
inline std::string faultof(const imported& found) {
    const auto nodes = int(found.nodes.size()), elements = int(found.elements.size());
    const auto within = [](int i, int low, int high) { return i >= low && i <= high; };
    for (const triple& n : found.nodes)
        for (const double v : n)
            if (!std::isfinite(v)) return "a coordinate";
    for (const importedelement& e : found.elements) {
        if (!within(e.group, 0, int(found.groups.size()))) return "a group";
        const int elnn = nodesoftype(float(e.type));
        for (int c = 0; c < 4; ++c)
            if (!within(e.corners[std::size_t(c)], c < elnn ? 1 : 0, c < elnn ? nodes : 0))
                return "a corner";
    }
    for (const importedrow& row : found.constraints)
        if (!within(row.item, 1, nodes) || !within(row.dof, 1, 6)) return "a constraint";
    for (const importedcase& c : found.cases) {
        for (const importedrow& row : c.nodal)
            if (!within(row.item, 1, nodes) || !within(row.dof, 1, 6)) return "a load";
        for (const importedrow& row : c.onelements)
            if (!within(row.item, 1, elements) || !within(row.dof, 1, 3)) return "a pressure";
    }
    for (const importedorientation& o : found.orientations)
        if (!within(o.element, 1, elements)) return "a direction";
    for (const importedrelease& r : found.releases)
        if (!within(r.element, 1, elements) || !within(r.end, 1, 2) || !within(r.dof, 1, 6))
            return "a release";
    const auto fits = [](std::size_t n, std::size_t count) { return n == 0 || n == count; };
    if (!fits(found.nodenumbers.size(), found.nodes.size()) ||
        !fits(found.elementnumbers.size(), found.elements.size()) ||
        !fits(found.nodenames.size(), found.nodes.size()) ||
        !fits(found.elementnames.size(), found.elements.size()))
        return "the numbers";
    return "";
}
