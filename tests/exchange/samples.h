// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of the files in tests/exchange/samples, and what is asked of every format.
#pragma once

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
