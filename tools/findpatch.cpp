// SPDX-License-Identifier: GPL-3.0-or-later
// Loops of graphic elements.
#include "tools/findpatch.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/colours.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "tools/Surfaces.h"
#include "view/moddraw.h"
#include "view/pen.h"
#include "view/scaleview.h"

static point3 wayof(int signedline) {
    const int g = std::abs(signedline);
    const point3 way = definitionpoint(graphics, g, 1) - definitionpoint(graphics, g, 2);
    return signedline > 0 ? way : -1.0 * way;
}

// Angle from the way back to the way on, about the loop's normal, 0 to 2 pi.
static double turnof(const point3& back, const point3& on, const point3& normal) {
    const double angle = std::atan2(dot(cross(back, on), normal) / lengthof(normal), dot(back, on));
    return angle <= 0 ? angle + 2 * pi : angle;
}

// The way on stays in the plane of the loop.
static bool isinplane(const point3& on, const point3& normal) {
    const double outofplane = 1e-3;  // of the line's length
    const double length = dot(on, on), away = dot(on, normal);
    return length > 0 && away * away <= outofplane * outofplane * length * dot(normal, normal);
}

// --- walking ------------------------------------------------------------------------------------

namespace {

enum class ending { closed, lost, toolong };

class walker {
  public:
    explicit walker(const jointtable& table);
    // Follows the elements from g by way of c, which meets its end 1, and back, over at most `most`
    // of them.
    ending walk(int g, int c, std::size_t most);
    std::vector<int> loop;  // the elements of the last walk

  private:
    static int endof(int signedpiece) { return signedpiece > 0 ? 1 : 2; }
    // From an end into the element: along a line as far as it goes, along others a tenth of the
    // way.
    const point3& into(int g, int end) const {
        return ways[2 * std::size_t(g) + std::size_t(end - 1)];
    }
    int tightest(const std::vector<int>& list, const point3& back, const point3& normal) const;
    bool isused(int g) const { return usedby[std::size_t(g)] == round; }
    void use(int g) {
        usedby[std::size_t(g)] = round;
        loop.push_back(g);
    }

    const jointtable& joints;
    std::vector<point3> ways;
    std::vector<int> usedby;  // the number of the walk that came along last
    int round = 0;
};

walker::walker(const jointtable& table)
    : joints(table), ways(2 * std::size_t(ngraphics()) + 2), usedby(std::size_t(ngraphics()) + 1) {
    const double share = 0.1;
    for (int g = 1; g <= ngraphics(); ++g) {
        const std::size_t at = 2 * std::size_t(g);
        if (kindof(graphics, g) == kindline) {
            ways[at + 1] = wayof(g);
            ways[at] = -1.0 * ways[at + 1];
        } else if (setgraphic(graphics, g)) {
            ways[at] = graphicpoint(share) - graphicpoint(0);
            ways[at + 1] = graphicpoint(1 - share) - graphicpoint(1);
        }
    }
}

int walker::tightest(const std::vector<int>& list, const point3& back, const point3& normal) const {
    int best = 0;
    double least = -1;  // not worked out while there is but one
    for (const int next : list) {
        const point3& on = into(std::abs(next), endof(next));
        if (isused(std::abs(next)) || !isinplane(on, normal)) continue;
        if (best == 0) {
            best = next;
            continue;
        }
        if (least < 0) least = turnof(back, into(std::abs(best), endof(best)), normal);
        const double turn = turnof(back, on, normal);
        if (turn >= least) continue;
        least = turn;
        best = next;
    }
    return best;
}

ending walker::walk(int g, int c, std::size_t most) {
    ++round;
    loop.clear();
    use(g);
    use(std::abs(c));
    const point3 normal = cross(into(g, 1), into(std::abs(c), endof(c)));
    if (!(lengthof(normal) > 0)) return ending::lost;
    for (int current = c;;) {
        const int far = 3 - endof(current);
        const auto& list = joints[std::size_t(far)][std::size_t(std::abs(current))];
        if (loop.size() > 2 && std::ranges::find(list, -g) != list.end()) return ending::closed;
        if (loop.size() >= most) return ending::toolong;
        current = tightest(list, into(std::abs(current), far), normal);
        if (current == 0) return ending::lost;
        use(std::abs(current));
    }
}

}  // namespace

// --- telling ------------------------------------------------------------------------------------

static void selectloop(const std::vector<int>& loop) {
    hideselection();
    emptyselection();
    int entries = 0;
    for (std::size_t k = 0; k < loop.size(); ++k) {
        graphsel(long(k) + 1, 0) = loop[k];
        graphsel(long(k) + 1, 1) = 1;
        for (int end = 1; end <= 2; ++end) {
            ++entries;
            graphsel2(entries, 0) = loop[k];
            graphsel2(entries, 1) = end;
        }
    }
    graphsel(0, 0) = int(loop.size());
    graphsel2(0, 0) = entries;
    showselection();
}

// What was found from the two that the search began with.
static void drawway(const std::vector<int>& loop) {
    for (int v = 1; v <= shownviews(); ++v) {
        surface* const s = target(v);
        if (s == nullptr) continue;
        const keptpen pen(s);
        prepareview(v);
        drawcolor = rgb(255, 0, 0);
        s->drawwidth = 2;
        for (std::size_t k = 2; k < loop.size(); ++k) drawgraphic(graphics, loop[k], v);
        s->show();
    }
}

// True when the user wants to see the next one.
static bool tellfound(const std::vector<int>& loop, const char* text) {
    selectloop(loop);
    drawway(loop);
    messagebox box;
    box.text = text;
    box.set = buttons::okcancel;
    box.icon = icons::information;
    return theplatform().show(box) == answers::ok;
}

// --- the search ---------------------------------------------------------------------------------

namespace {
struct start {
    int g, c;
};
struct outcome {
    int found = 0;
    bool stopped = false;
    bool cut = false;  // loops may be longer than was searched
};
}  // namespace

// Tries every start, first over loops that a patch can hold, then over longer ones as far as the
// work goes. found(loop) returns false to stop.
template <typename Begins, typename Found>
static outcome searchloops(const jointtable& joints, Begins begins, Found found) {
    const std::size_t patchholds = 4 * std::size_t(maxedgepieces);
    std::size_t work = 3000000;  // steps along elements
    walker w(joints);
    outcome result;
    std::vector<start> longer;
    for (int g = 1; g <= ngraphics(); ++g)
        for (const int c : joints[1][std::size_t(g)]) {
            if (!begins(g)) break;
            const ending end = w.walk(g, c, patchholds);
            if (end == ending::toolong) longer.push_back({g, c});
            if (end != ending::closed || ++result.found == 0) continue;
            if (!found(w.loop)) return result.stopped = true, result;
        }
    for (const start& s : longer) {
        result.cut = work == 0;
        if (result.cut) break;
        const ending end = w.walk(s.g, s.c, work);
        work -= std::min(work, w.loop.size());
        if (end != ending::closed || ++result.found == 0) continue;
        if (!found(w.loop)) return result.stopped = true, result;
    }
    return result;
}

static bool iscurved(int g) {
    return kindof(graphics, g) == kindcurve || kindof(graphics, g) == kindcircle;
}

// A loop with an arc or a curve is found from that.
static outcome searchcurved(int& found) {
    bool any = false;
    for (int g = 1; g <= ngraphics() && !any; ++g) any = iscurved(g);
    if (!any) return {};
    std::set<std::vector<int>> seen;
    return searchloops(findalljoints(), iscurved, [&](const std::vector<int>& loop) {
        std::vector<int> sorted = loop;
        std::ranges::sort(sorted);
        if (!seen.insert(sorted).second) return true;
        ++found;
        return tellfound(loop, "found a loop with arcs or curves");
    });
}

int findpatch() {
    setselectitem(selectgraphics);
    const outcome lines = searchloops(
        findjoints(), [](int) { return true; },
        [](const std::vector<int>& loop) { return tellfound(loop, "found patch"); });
    if (lines.stopped) return lines.found;
    int found = lines.found;
    const outcome curved = searchcurved(found);
    if (curved.stopped) return found;
    clearselection();
    if (found == 0) theplatform().message("No lines form a closed loop", icons::information);
    if (lines.cut || curved.cut)
        theplatform().message("Loops of more than " + numbertext(4 * maxedgepieces) +
                                  " graphic elements were not all searched for",
                              icons::information);
    return found;
}
