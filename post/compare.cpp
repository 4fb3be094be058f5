// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the second result of a comparison, and the views that follow each other. State: where
// both looked last.
#include "post/compare.h"

#include <array>
#include <optional>
#include <tuple>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "post/contour.h"
#include "post/secondplot.h"
#include "post/shapes.h"
#include "post/source.h"
#include "post/stressfile.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/setviews.h"
#include "view/surface.h"

int comparedwith() {
    return sidebyside ? second.number : 0;
}

// --- reading ------------------------------------------------------------------------------------

static auto plotkey() {
    return std::tuple(modelname, second.number, menupostItem(modeshape).checked,
                      menupostItem(deformedshape).checked, menupostItem(contourplot).checked,
                      menupostItem(elementstress).checked, stresscomp, contourdata, dispcontour,
                      stressaverage, stressglobal, postset, postgroup, nelems(), nnodes());
}

static void keepvalues() {
    const std::size_t corners = 4;
    second.values.clear();
    second.span = {};
    if (!plotready()) return;
    second.values.resize(std::size_t(nelems() + 1) * corners);
    for (int e = 1; e <= nelems(); ++e) {
        if (!isplotted(e)) continue;
        for (int c = 1; c <= nodesoftype(elems(e, 0)); ++c) {
            const float v = plotvalue(e, c);
            second.values[std::size_t(e) * corners + std::size_t(c) - 1] = v;
            second.span.take(double(v));
        }
    }
}

static void keepdisplacements() {
    second.displacements.clear();
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) second.displacements.push_back(nodes(1, n, k));
}

namespace {
// The second combination in view for as long as it lives.
struct secondinview {
    secondinview() : first(curlcomb), source(shownsource.of) {
        second.reading = true;
        curlcomb = second.number;
        shownsource.of = sources::combination;
    }
    ~secondinview() {
        second.reading = false;
        curlcomb = first;
        shownsource.of = source;
        retryresults();
    }
    secondinview(const secondinview&) = delete;
    secondinview& operator=(const secondinview&) = delete;
    const int first;
    const sources source;
};
}  // namespace

static void readcompared() {
    static decltype(plotkey()) key;
    if (!sidebyside || second.reading || (second.valid && key == plotkey())) return;
    key = plotkey();
    {
        const secondinview now;
        retryresults();
        readfield();
        prepareplot();
        keepvalues();
        keepdisplacements();
    }
    readfield();
    second.valid = true;
}

// --- views that follow each other ---------------------------------------------------------------

using viewplace9 = std::array<float, 9>;

static viewplace9 placeof(int v) {
    return {viewptx(v),   viewpty(v),  viewptz(v), viewvert(v), viewhor(v),
            viewscale(v), viewdist(v), viewaw(v),  viewdepth(v)};
}

static void setplace(int v, const viewplace9& p) {
    array1<float>* const lists[] = {&viewptx,   &viewpty,  &viewptz, &viewvert, &viewhor,
                                    &viewscale, &viewdist, &viewaw,  &viewdepth};
    for (std::size_t i = 0; i < p.size(); ++i) (*lists[i])(v) = p[i];
}

static viewplace9 lastplace;  // of both

// The other one goes where this one went, and is drawn too.
static void follow(int nview) {
    const int other = 3 - nview;
    if (placeof(nview) == placeof(other)) return;
    const int source = placeof(other) != lastplace && placeof(nview) == lastplace ? other : nview;
    lastplace = placeof(source);
    setplace(3 - source, lastplace);
    drawview(other);
}

static void around(int nview, bool begins) {
    static std::optional<ofview> guest;
    if (begins && nview == 2) guest.emplace(nview);
    if (begins) return;
    if (nview == 2) guest.reset();
    if (nview == 2 && sidebyside && !second.commonscale) prepareplot();  // back to view 1's scale
    if (sidebyside && nview <= 2 && toprinter == 0) follow(nview);
}

void wirecompare() {
    aroundview = around;
    readsecond = readcompared;
}

// --- the comparison -----------------------------------------------------------------------------

void startcomparison(int with) {
    second.number = with;
    second.valid = false;
    if (!sidebyside) {
        lastplace = placeof(1);
        setplace(2, lastplace);
        copyvisibility(1, 2);
        viewgroup(2) = viewgroup(1);
        viewtype(2) = viewtype(1);
        settwoviews();
    }
    showresults();
}

void choosecommonscale(bool common) {
    second.commonscale = common;
    showresults();
}

void endcomparison() {
    if (!sidebyside) return;
    second = {};
    setoneview();
    showresults();
}
