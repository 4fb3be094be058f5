// SPDX-License-Identifier: GPL-3.0-or-later
// The selection lists.
#include "edit/selection.h"

#include <algorithm>
#include <iterator>

#include "core/catalogue.h"
#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/find.h"
#include "edit/lasso.h"
#include "edit/pickplaces.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

picks pickmode = picks::told;

selectitems selectitem() {
    for (int i = 0; i <= selectgraphics; ++i)
        if (MnuSelectItem(i).checked) return selectitems(i);
    return selectnodes;
}

void checkselectitem(int item) {
    for (int i = 0; i <= selectgraphics; ++i) MnuSelectItem(i).checked = i == item;
}

// --- single items -------------------------------------------------------------------------------

template <typename T>
static void toggle(array1<T>& list, int number) {
    const int count = int(list(0));
    int place = 1;
    while (place <= count && int(list(place)) != number) ++place;
    if (place > count) {
        list(count + 1) = T(number);
        list(0) = T(count + 1);
        return;
    }
    for (; place < count; ++place) list(place) = list(place + 1);
    list(0) = T(count - 1);
}

void togglenode(int n) {
    toggle(nodesel, n);
}

void toggleelement(int e) {
    toggle(elemsel, e);
}

void togglepatch(int p) {
    toggle(patchsel, p);
}

void togglegraphic(int g, int point) {
    const int count = graphsel2(0, 0);
    int place = 1;
    while (place <= count && (graphsel2(place, 0) != g || graphsel2(place, 1) != point)) ++place;
    if (place > count) {
        graphsel2(count + 1, 0) = g;
        graphsel2(count + 1, 1) = point;
        graphsel2(0, 0) = count + 1;
        syncgraphsel();
        return;
    }
    for (; place < count; ++place)
        for (int k = 0; k <= 1; ++k) graphsel2(place, k) = graphsel2(place + 1, k);
    graphsel2(0, 0) = count - 1;
    syncgraphsel();
}

void syncgraphsel() {
    std::vector<bool> marks(std::size_t(ngraphics()) + 1, false);
    int count = 0;
    for (int i = 1; i <= graphsel2(0, 0); ++i) {
        const int g = graphsel2(i, 0);
        if (g < 1 || g > ngraphics() || marks[std::size_t(g)]) continue;
        marks[std::size_t(g)] = true;
        ++count;
        graphsel(count, 0) = g;
        graphsel(count, 1) = graphsel2(i, 1) == 2 ? 2 : 1;
    }
    graphsel(0, 0) = count;
}

// --- lists --------------------------------------------------------------------------------------

std::vector<bool> marksof(const std::vector<int>& list, int upper) {
    std::vector<bool> marks(std::size_t(upper) + 1, false);
    for (const int n : list)
        if (n >= 1 && n <= upper) marks[std::size_t(n)] = true;
    return marks;
}

template <typename T>
static std::vector<int> numbersin(const array1<T>& list) {
    std::vector<int> numbers;
    for (int i = 1; i <= int(list(0)); ++i) numbers.push_back(int(list(i)));
    return numbers;
}

std::vector<int> selectednodes() {
    return numbersin(nodesel);
}

std::vector<int> selectedelements() {
    return numbersin(elemsel);
}

template <typename T>
static void append(array1<T>& list, int number) {
    const int count = int(list(0)) + 1;
    list(count) = T(number);
    list(0) = T(count);
}

static void appendgraphic(int g, int point) {
    const int count = graphsel2(0, 0) + 1;
    graphsel2(count, 0) = g;
    graphsel2(count, 1) = point;
    graphsel2(0, 0) = count;
}

// --- window -------------------------------------------------------------------------------------

namespace {
struct screenbox {
    double left, right, top, bottom;
    screenbox(double x1, double y1, double x2, double y2)
        : left(std::min(x1, x2)),
          right(std::max(x1, x2)),
          top(std::min(y1, y2)),
          bottom(std::max(y1, y2)) {}
    bool holds(double x, double y) const { return x > left && x < right && y > top && y < bottom; }
};
}  // namespace

// Is the point in work, projected, strictly inside?
template <typename Shape>
static bool isinside(const Shape& shape, int nview) {
    projectpoint(nview);
    return shape.holds(scrx, scry);
}

template <typename Shape>
static void windownodes(int nview, const Shape& box) {
    const std::vector<bool> already = marksof(selectednodes(), nnodes());
    for (int n = 1; n <= nnodes(); ++n) {
        if (already[std::size_t(n)]) continue;
        setnode(n, nview);
        if (isinside(box, nview)) append(nodesel, n);
    }
}

template <typename Shape>
static void windowelements(int nview, const Shape& box) {
    const std::vector<bool> already = marksof(selectedelements(), nelems());
    for (int e = 1; e <= nelems(); ++e) {
        if (already[std::size_t(e)] || elems(e, 0) == 0 || !isshown(e, nview)) continue;
        setcentre(e, nview);
        if (isinside(box, nview)) append(elemsel, e);
    }
}

template <typename Shape>
static void windowgraphics(int nview, const Shape& box) {
    std::vector<bool> already(std::size_t(ngraphics() + 1) * 4, false);
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        already[std::size_t(graphsel2(i, 0) * 4 + graphsel2(i, 1))] = true;
    for (int g = 1; g <= ngraphics(); ++g)
        for (int j = 1; j <= pointsofgraphic(int(graphics(g, 0, 0))); ++j) {
            if (already[std::size_t(g * 4 + j)]) continue;
            setpoint(nview, graphics(g, j, 1), graphics(g, j, 2), graphics(g, j, 3));
            if (isinside(box, nview)) appendgraphic(g, j);
        }
}

template <typename Shape>
static void windowpatches(int nview, const Shape& box) {
    const std::vector<bool> already = marksof(numbersin(patchsel), patches(0, 0, 0));
    for (int p = 1; p <= patches(0, 0, 0); ++p) {
        const int g = patches(p, 1, 1);
        if (already[std::size_t(p)] || g < 1 || g > ngraphics()) continue;
        setpoint(nview, graphics(g, 1, 1), graphics(g, 1, 2), graphics(g, 1, 3));
        if (isinside(box, nview)) append(patchsel, p);
    }
}

template <typename Shape>
static void selectinside(int nview, const Shape& box) {
    const keptpoint kept;
    prepareview(nview);
    switch (selectitem()) {
        case selectnodes:
        case selectforces:
            return windownodes(nview, box);
        case selectelements:
            return windowelements(nview, box);
        case selectgraphics:
            windowgraphics(nview, box);
            return syncgraphsel();
        case selectpatches:
            return windowpatches(nview, box);
    }
}

void selectwindow(int nview, double x1, double y1, double x2, double y2) {
    selectinside(nview, screenbox(x1, y1, x2, y2));
}

void selectpolygon(int nview, const std::vector<point2>& corners) {
    selectinside(nview, lassoshape(corners));
}

// --- joining ------------------------------------------------------------------------------------

namespace {
// One selection list: its rows as numbers that name an item each, and the writing of them.
struct listdoor {
    std::vector<int> (*read)();
    void (*write)(const std::vector<int>&);
};
}  // namespace

template <auto& list>
static listdoor doorof() {
    return {[] { return numbersin(list); },
            [](const std::vector<int>& numbers) {
                list(0) = 0;
                for (const int n : numbers) append(list, n);
            }};
}

static std::vector<int> graphicpoints() {
    std::vector<int> numbers;
    for (int i = 1; i <= graphsel2(0, 0); ++i)
        numbers.push_back(graphsel2(i, 0) * 4 + graphsel2(i, 1));
    return numbers;
}

static void setgraphicpoints(const std::vector<int>& numbers) {
    graphsel2(0, 0) = 0;
    for (const int n : numbers) appendgraphic(n / 4, n % 4);
}

void selectwith(picks mode, const std::function<void()>& select) {
    if (mode == picks::told) return select();
    static const listdoor lists[] = {doorof<nodesel>(),
                                     doorof<elemsel>(),
                                     doorof<patchsel>(),
                                     {graphicpoints, setgraphicpoints}};
    std::vector<std::vector<int>> before;
    for (const listdoor& list : lists) before.push_back(list.read());
    emptyselection();
    select();
    for (std::size_t i = 0; i < before.size() && mode != picks::instead; ++i) {
        const std::vector<int> found = lists[i].read();
        std::vector<int>& kept = before[i];
        const bool adds = mode == picks::add;
        const std::vector<int>& other = adds ? kept : found;
        const int most = other.empty() ? 0 : std::ranges::max(other);
        const std::vector<bool> marks = marksof(other, most);
        const auto ismarked = [&](int n) { return n <= most && marks[std::size_t(n)]; };
        if (adds)
            std::ranges::remove_copy_if(found, std::back_inserter(kept), ismarked);
        else
            std::erase_if(kept, ismarked);
        lists[i].write(kept);
    }
    syncgraphsel();
}

// --- group and all ------------------------------------------------------------------------------

void selectgroup(int group) {
    elemsel(0) = 0;
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0 && egroup(e) == group) append(elemsel, e);
}

void selectallnodes() {
    nodesel(0) = 0;
    for (int n = 1; n <= nnodes(); ++n) append(nodesel, n);
}

void selectallelements() {
    elemsel(0) = 0;
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0) append(elemsel, e);
}

void selectallgraphics() {
    graphsel2(0, 0) = 0;
    for (int g = 1; g <= ngraphics(); ++g)
        for (int j = 1; j <= pointsofgraphic(int(graphics(g, 0, 0))); ++j) appendgraphic(g, j);
}

void selectallpatches() {
    patchsel(0) = 0;
    for (int p = 1; p <= patches(0, 0, 0); ++p)
        if (patches(p, 0, 0) != 0) append(patchsel, p);
}

void selectall() {
    switch (selectitem()) {
        case selectnodes:
        case selectforces:
            return selectallnodes();
        case selectelements:
            return selectallelements();
        case selectgraphics:
            selectallgraphics();
            return syncgraphsel();
        case selectpatches:
            return selectallpatches();
    }
}

// --- the whole ----------------------------------------------------------------------------------

bool isselection() {
    return nodesel(0) != 0 || elemsel(0) != 0 || graphsel2(0, 0) != 0 || patchsel(0) != 0;
}

void emptyselection() {
    nodesel(0) = 0;
    elemsel(0) = 0;
    graphsel(0, 0) = graphsel2(0, 0) = 0;
    patchsel(0) = 0;
}

void showselection() {
    const keptpen pen;
    drawcolor = selcolor;
    drawselectionall();
}

void hideselection() {
    const keptpen pen;
    drawcolor = backcolor;
    drawselectionall();
}

void clearselection() {
    if (!isselection()) return;
    hideselection();
    emptyselection();
}

void gatherelementnodes() {
    nodesel(0) = 0;
    std::vector<bool> marks(std::size_t(nnodes()) + 1, false);
    for (int i = 1; i <= int(elemsel(0)); ++i) {
        const int e = int(elemsel(i));
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
            const int n = int(elems(e, k));
            if (marks[std::size_t(n)]) continue;
            marks[std::size_t(n)] = true;
            append(nodesel, n);
        }
    }
}
