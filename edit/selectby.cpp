// SPDX-License-Identifier: GPL-3.0-or-later
// Queries on the model.
#include "edit/selectby.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "view/facesides.h"
#include "view/setviews.h"

static bool iselement(int e) {
    return nodesoftype(elems(e, 0)) != 0;
}

// --- numbers ------------------------------------------------------------------------------------

static std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// A number, or the name of a node or element.
static bool findnumber(const std::string& word, bool ofnodes, int& number) {
    double value = 0;
    if (readnumber(word, value) && value == std::floor(value) && std::fabs(value) < 1e9) {
        number = int(value);
        return true;
    }
    const int count = ofnodes ? nnodes() : nelems();
    for (int i = 1; i <= count; ++i)
        if ((ofnodes ? nodename(i) : elemname(i)) == word) {
            number = i;
            return true;
        }
    return false;
}

// "12", "1-20", "40-60/5".
static bool readrange(const std::string& word, bool ofnodes, int& from, int& to, int& by) {
    by = 1;
    if (findnumber(word, ofnodes, from)) {
        to = from;
        return true;
    }
    const std::size_t dash = word.find('-', 1);
    if (dash == word.npos) return false;
    const std::size_t slash = word.find('/', dash);
    const std::string last = word.substr(dash + 1, slash == word.npos ? slash : slash - dash - 1);
    if (!findnumber(trimmed(word.substr(0, dash)), ofnodes, from)) return false;
    if (!findnumber(trimmed(last), ofnodes, to)) return false;
    if (slash != word.npos && !findnumber(trimmed(word.substr(slash + 1)), ofnodes, by))
        return false;
    if (from > to) std::swap(from, to);
    return by >= 1;
}

static void findnumbers(const selectquery& q, std::vector<bool>& marks, selectfound& found) {
    const char* const kind = q.ofnodes ? "node" : "element";
    const int count = q.ofnodes ? nnodes() : nelems();
    bool any = false;
    for (std::size_t begin = 0; begin <= q.numbers.size();) {
        const std::size_t end = std::min(q.numbers.find_first_of(",;", begin), q.numbers.size());
        const std::string word = trimmed(q.numbers.substr(begin, end - begin));
        begin = end + 1;
        if (word.empty()) continue;
        any = true;
        int from = 0, to = 0, by = 1;
        if (!readrange(word, q.ofnodes, from, to, by)) {
            found.fault =
                "\"" + word + "\" is no " + kind + "; numbers are written like 1-20, 35, 40-60/5";
            return;
        }
        if (from > count || to < 1) {
            found.fault = std::string("There is no ") + kind + " " + word + "; the model has " +
                          numbertext(count);
            return;
        }
        for (int i = from; i <= std::min(to, count); i += by)
            if (i >= 1 && (q.ofnodes || iselement(i))) marks[std::size_t(i)] = true;
    }
    if (!any) found.fault = std::string("Type the number of a ") + kind + ", or several: 1-20, 35";
}

// --- places -------------------------------------------------------------------------------------

static void findbetween(const selectquery& q, std::vector<bool>& marks) {
    const double low = std::min(q.low, q.high), high = std::max(q.low, q.high);
    // Coordinates are Singles: what was typed as 0.1 is theirs too.
    const double slack = 1e-6 * std::max({std::fabs(low), std::fabs(high), high - low});
    const auto lies = [&](double x) { return x >= low - slack && x <= high + slack; };
    for (int n = 1; q.ofnodes && n <= nnodes(); ++n)
        marks[std::size_t(n)] = lies(nodes(0, n, q.axis));
    for (int e = 1; !q.ofnodes && e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        double sum = 0;
        for (int k = 1; k <= elnn; ++k) sum += nodes(0, long(elems(e, k)), q.axis);
        marks[std::size_t(e)] = elnn != 0 && lies(sum / elnn);
    }
}

// --- what hangs together ------------------------------------------------------------------------

namespace {

using direction = std::array<double, 3>;

// The k-th corner; 0 where it is no node of the model.
int cornerof(int e, int k = 1) {
    const float n = elems(e, k);
    return n >= 1 && n <= float(nnodes()) ? int(n) : 0;
}

// Whichever way the normals point; normals of one plane differ by the rounding of Singles.
template <typename Normal>
bool samedirection(const Normal& a, const Normal& b, double leastcosine) {
    const double slack = 1e-6;
    return std::fabs(a[0] * b[0] + a[1] * b[1] + a[2] * b[2]) >= leastcosine - slack;
}

// Nodes that elements tie together, as trees: those of one part have one root.
class parts {
  public:
    parts() : above(std::size_t(nnodes()) + 1) {
        std::iota(above.begin(), above.end(), 0);
        for (int e = 1; e <= nelems(); ++e)
            for (int k = 2; k <= nodesoftype(elems(e, 0)); ++k) {
                int& a = above[std::size_t(rootof(cornerof(e, k)))];
                int& b = above[std::size_t(rootof(cornerof(e)))];
                a = b = std::min(a, b);
            }
    }
    int rootof(int n) {
        while (above[std::size_t(n)] != n) {
            int& over = above[std::size_t(n)];
            over = above[std::size_t(over)];
            n = over;
        }
        return n;
    }

  private:
    std::vector<int> above;
};

}  // namespace

// The selected elements, or those at the selected nodes.
static std::vector<int> seeds() {
    std::vector<int> list = selectedelements();
    if (!list.empty()) return list;
    std::vector<bool> at(std::size_t(nnodes()) + 1);
    for (const int n : selectednodes())
        if (n >= 1 && n <= nnodes()) at[std::size_t(n)] = true;
    for (int e = 1; e <= nelems(); ++e) {
        bool any = false;
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
            any = any || at[std::size_t(cornerof(e, k))];
        if (any) list.push_back(e);
    }
    return list;
}

static void findjoined(const std::vector<int>& from, std::vector<bool>& marks) {
    parts part;
    std::vector<bool> wanted(std::size_t(nnodes()) + 1);
    for (const int e : from) wanted[std::size_t(part.rootof(cornerof(e)))] = true;
    for (int e = 1; e <= nelems(); ++e)
        marks[std::size_t(e)] = iselement(e) && wanted[std::size_t(part.rootof(cornerof(e)))];
}

static void findnormal(const std::vector<int>& from, double leastcosine, std::vector<bool>& marks) {
    std::vector<direction> wanted;
    for (const int e : from) {
        const direction d = facenormal(e);
        if (std::ranges::none_of(wanted, [&](const direction& w) { return w == d; }))
            wanted.push_back(d);
        if (wanted.size() > 16) break;  // a curved face: its first directions
    }
    for (int e = 1; e <= nelems(); ++e) {
        const direction d = facenormal(e);
        if (d != direction{} && std::ranges::any_of(wanted, [&](const direction& w) {
                return samedirection(w, d, leastcosine);
            }))
            marks[std::size_t(e)] = true;
    }
}

// From face to face over common sides.
static void findface(const std::vector<int>& from, double leastcosine, std::vector<bool>& marks) {
    const facesides& sides = sidesofmodel();
    const auto normals = facenormals();
    std::vector<int> front = from;
    while (!front.empty()) {
        const int here = front.back();
        front.pop_back();
        for (int side = 4 * here; side < 4 * here + 4; ++side)
            for (int s = sides.next(side); s != side; s = sides.next(s)) {
                const std::size_t other = std::size_t(facesides::elementof(s));
                if (marks[other] ||
                    !samedirection(normals[std::size_t(here)], normals[other], leastcosine))
                    continue;
                marks[other] = true;
                front.push_back(int(other));
            }
    }
}

static void findfrom(const selectquery& q, std::vector<bool>& marks, selectfound& found) {
    std::vector<int> from = seeds();
    if (q.way != selectways::joined)
        std::erase_if(from, [](int e) { return facenormal(e) == direction{}; });
    if (from.empty()) {
        found.fault = q.way == selectways::joined
                          ? "Select an element or node of the part first"
                          : "Select a triangle or quadrilateral of the face first";
        return;
    }
    for (const int e : from) marks[std::size_t(e)] = true;
    const double leastcosine = std::cos(q.angle * pi / 180);
    if (q.way == selectways::joined)
        findjoined(from, marks);
    else if (q.way == selectways::normal)
        findnormal(from, leastcosine, marks);
    else
        findface(from, leastcosine, marks);
}

// --- the query ----------------------------------------------------------------------------------

static std::vector<int> listed(const std::vector<bool>& marks) {
    std::vector<int> items;
    items.reserve(std::size_t(std::count(marks.begin(), marks.end(), true)));
    for (std::size_t i = 1; i < marks.size(); ++i)
        if (marks[i]) items.push_back(int(i));
    return items;
}

static std::vector<int> nodesof(const std::vector<int>& elements) {
    std::vector<bool> marks(std::size_t(nnodes()) + 1);
    for (const int e : elements)
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) marks[std::size_t(elems(e, k))] = true;
    return listed(marks);
}

selectfound findby(const selectquery& q) {
    selectfound found;
    const bool itself = q.way == selectways::number || q.way == selectways::coordinate;
    std::vector<bool> marks(std::size_t(itself && q.ofnodes ? nnodes() : nelems()) + 1);
    if (q.way == selectways::number)
        findnumbers(q, marks, found);
    else if (q.way == selectways::coordinate)
        findbetween(q, marks);
    else if (q.way == selectways::group || q.way == selectways::type)
        for (int e = 1; e <= nelems(); ++e)
            marks[std::size_t(e)] =
                iselement(e) &&
                (q.way == selectways::group ? egroup(e) == q.group : int(elems(e, 0)) == q.type);
    else
        findfrom(q, marks, found);
    if (!found.fault.empty()) return found;
    found.items = listed(marks);
    if (q.ofnodes && !itself) found.items = nodesof(found.items);
    return found;
}

// --- selecting ----------------------------------------------------------------------------------

void selectlist(bool ofnodes, const std::vector<int>& items, picks mode) {
    const step s("Select", reaches::nothing);
    setselectitem(ofnodes ? selectnodes : selectelements);
    hideselection();
    selectwith(mode == picks::told ? picks::instead : mode, [&] {
        for (const int i : items) {
            if (ofnodes) {
                nodesel(nodesel(0) + 1) = i;
                nodesel(0) = nodesel(0) + 1;
            } else {
                elemsel(long(elemsel(0)) + 1) = float(i);
                elemsel(0) = elemsel(0) + 1;
            }
        }
    });
    showselection();
    if (!isselectionpending()) promptselected();
}

bool zoomtoselection() {
    std::vector<int> list = selectednodes();
    for (const int n : nodesof(selectedelements())) list.push_back(n);
    zoomtonodes(activeview, list);
    return !list.empty();
}
