// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing of .tek and .rot.
#include "files/tekfile.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/views.h"

static const int rowsperreport = 20000;  // rows between two looks at the progress window

static void reportsaving(const char* what, int row, double share) {
    if (row % rowsperreport == 0) theplatform().progress(what, share, false);
}

// While menus are locked the model comes back from an analysis: that reading is never given up.
static void reportreading(const char* what, int row, const textin& in) {
    if (row % rowsperreport != 0 || theplatform().progress(what, in.share(), !menulock) || menulock)
        return;
    throw runtimeerror{errstopped, "The reading of the model was cancelled"};
}

static int livecount() {
    int live = 0;
    for (int e = 1; e <= nelems(); ++e) live += elems(e, 0) != 0;
    return live;
}

// Degrees of freedom for the solver: 1 in 2-D, 2 in 3-D, one more with an element of type 6..11.
static int deriveddoftype() {
    bool rotations = false;
    for (int e = 1; e <= nelems() && !rotations; ++e) rotations = hasrotations(int(elems(e, 0)));
    return (dim2d ? 1 : 2) + (rotations ? 1 : 0);
}

void writetek(textout& out) {
    doftype = deriveddoftype();
    const int count = nnodes(), slots = nelems();
    out.line(count, livecount());
    for (int n = 1; n <= count; ++n) {
        const auto at = nodes.row(0, n);
        out.line(at[0], at[1], at[2]);
        reportsaving("Saving nodes", n, double(n) / count / 2);
    }
    for (int e = 1; e <= slots; ++e) {
        const auto row = elems.row(e);
        if (row[0] == 0) continue;
        out.line(row[0]);
        const int elnn = nodesoftype(row[0]);
        for (int k = 1; k <= elnn; ++k) out.put(row[std::size_t(k)]).comma();
        out.line(egroup(e));
        reportsaving("Saving elements", e, 0.5 + double(e) / slots / 2);
    }
    for (int v = 1; v <= nviews; ++v)
        out.line(viewptx(v), viewpty(v), viewptz(v), viewvert(v), viewhor(v), viewaw(v),
                 viewdist(v), viewscale(v));
}

void writerot(textout& out) {
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0) out.line(rotpo(e));
}

// Type code, corners and group of one element; row receives type and corners.
static int readelement(textin& in, std::span<float> row, int nodecount) {
    const float type = in.single();
    if (type != std::floor(type) || type < 0 || type >= float(neltypes))
        in.fail(errtype, "element type " + numbertext(type) + " is not in the catalogue");
    row[0] = type;
    const int elnn = nodesoftype(type);
    for (int k = 1; k <= elnn; ++k) {
        const float n = in.single();
        if (n != std::floor(n) || n < 1 || n > float(nodecount))
            in.fail(errtype, "an element uses node " + numbertext(n) +
                                 ", which does not exist; the model has nodes 1 to " +
                                 numbertext(nodecount));
        row[std::size_t(k)] = n;
    }
    const int group = in.count();
    // A free slot has no nodes; with some, every number behind them would be taken for another.
    if (type == 0 && !in.atlineend())
        in.fail(errtype, "an element of type 0 has no nodes, a type from 1 up was expected");
    return group;
}

// A file from before eye distance and scale existed has six numbers a view.
static void readviews(textin& in) {
    const float nodistance = 100000;
    const std::size_t sixes = 6 * nviews, eights = 8 * nviews;
    std::vector<float> numbers;
    std::size_t firstline = 0;  // numbers on it
    while (!in.atend() && numbers.size() < eights) {
        numbers.push_back(in.single());
        if (firstline == 0 && in.atlineend()) firstline = numbers.size();
    }
    // Three whole views of eight numbers are as many as four of six.
    const std::size_t fields = numbers.size() == sixes && firstline != 8 ? 6 : 8;
    if (numbers.size() % fields != 0) in.fail(errpastend, "a view of the model is incomplete");
    for (int v = 1; v <= nviews && std::size_t(v) * fields <= numbers.size(); ++v) {
        float value[8] = {};
        std::copy_n(numbers.begin() + long(std::size_t(v - 1) * fields), fields, value);
        viewptx(v) = value[0];
        viewpty(v) = value[1];
        viewptz(v) = value[2];
        viewvert(v) = value[3];
        viewhor(v) = value[4];
        viewaw(v) = value[5];
        viewdist(v) = value[6] == 0 ? nodistance : value[6];
        viewscale(v) = value[7] == 0 ? 1 : value[7];
    }
}

static void readgeometry(textin& in) {
    const int count = in.rows(), slots = in.rows();
    nodes(0, 0, 0) = float(count);
    elems(0, 0) = float(slots);
    for (int n = 1; n <= count; ++n) {
        const auto at = nodes.row(0, n);
        for (std::size_t k = 0; k < 3; ++k) at[k] = in.single();
        reportreading("Reading nodes", n, in);
    }
    hasmass = hasplates = false;
    for (int e = 1; e <= slots; ++e) {
        const auto row = elems.row(e);
        egroup(e) = readelement(in, row, count);
        const int elnn = nodesoftype(row[0]);
        if (elnn == 1) hasmass = true;
        if (elnn > 2) hasplates = true;
        reportreading("Reading elements", e, in);
    }
    doftype = deriveddoftype();
}

void readtek(const std::string& base) {
    textin in(findnocase(base + ".tek"));
    readgeometry(in);
    // A model is not lost for what its views looked at.
    guarded([&] { readviews(in); },
            [](const runtimeerror& e) {
                theplatform().message(e.what + "; the views stay as in a new model",
                                      icons::exclamation);
            });
}

void readtekgeometry(const std::string& base) {
    textin in(findnocase(base + ".tek"));
    readgeometry(in);
}

void readrot(const std::string& base) {
    for (int e = 1; e <= nelems(); ++e) rotpo(e) = 0;
    textin in(findnocase(base + ".rot"));
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0) rotpo(e) = in.number();
}

void readtekbuffer(const std::string& base, int groupoffset) {
    textin in(findnocase(base + ".tek"));
    const int count = in.rows(), slots = in.rows();
    for (int n = 1; n <= count; ++n) {
        const auto row = tmpnodes.row(n);
        row[0] = float(n);
        for (std::size_t k = 1; k <= 3; ++k) row[k] = in.single();
    }
    for (int e = 1; e <= slots; ++e) {
        tmpelems(e, 5) = float(readelement(in, tmpelems.row(e), count) + groupoffset);
        tmprotpo(e) = 0;
    }
    tmpnodes(0, 0) = float(count);
    tmpelems(0, 0) = float(slots);
}
