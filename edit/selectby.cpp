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
#include "view/celllists.h"
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

// Unit normal of a face; all zero where it has none.
direction normalof(int e) {
    const auto row = elems.row(e);
    const int elnn = nodesoftype(row[0]);
    direction normal{};
    if (elnn < 3) return normal;
    const auto at = [&](int k, int axis) {
        return double(nodes(0, long(row[std::size_t(k)]), axis));
    };
    double a[3], b[3];
    for (int k = 0; k < 3; ++k) {
        a[k] = at(3, k) - at(1, k);
        b[k] = elnn == 4 ? at(4, k) - at(2, k) : at(2, k) - at(1, k);
    }
    normal = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    const double length = std::hypot(normal[0], normal[1], normal[2]);
    for (double& x : normal) x = length > 0 ? x / length : 0;
    return normal;
}

// Whichever way the normals point.
bool samedirection(const direction& a, const direction& b, double leastcosine) {
    const double cosine = std::fabs(std::inner_product(a.begin(), a.end(), b.begin(), 0.0));
    return cosine >= leastcosine;
}

// The elements at each node.
class neighbours {
  public:
    neighbours() {
        std::vector<int> used;
        for (int e = 1; e <= nelems(); ++e)
            if (iselement(e)) used.push_back(e);
        lists.build(std::size_t(nnodes()) + 1, used, [&](std::size_t i, auto work) {
            for (int k = 1; k <= nodesoftype(elems(used[i], 0)); ++k)
                work(std::size_t(elems(used[i], k)));
        });
    }
    std::span<const int> at(int n) const { return lists.of(std::size_t(n)); }

  private:
    celllists lists;
};

// How many corners of one element are corners of another.
int commonnodes(int e, int other) {
    int common = 0;
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
        for (int j = 1; j <= nodesoftype(elems(other, 0)); ++j)
            common += elems(e, k) == elems(other, j);
    return common;
}

}  // namespace

// The selected elements, or those at the selected nodes.
static std::vector<int> seeds(const neighbours& at) {
    std::vector<int> list = selectedelements();
    if (!list.empty()) return list;
    for (const int n : selectednodes())
        if (n >= 1 && n <= nnodes()) list.insert(list.end(), at.at(n).begin(), at.at(n).end());
    std::ranges::sort(list);
    list.erase(std::unique(list.begin(), list.end()), list.end());
    return list;
}

static void findfrom(const selectquery& q, std::vector<bool>& marks, selectfound& found) {
    const neighbours at;
    std::vector<int> front = seeds(at);
    if (q.way != selectways::joined)
        std::erase_if(front, [](int e) { return normalof(e) == direction{}; });
    if (front.empty()) {
        found.fault = q.way == selectways::joined
                          ? "Select an element or node of the part first"
                          : "Select a triangle or quadrilateral of the face first";
        return;
    }
    const double leastcosine = std::cos(q.angle * pi / 180);
    for (const int e : front) marks[std::size_t(e)] = true;
    if (q.way == selectways::normal) {
        std::vector<direction> wanted;
        for (const int e : front) {
            const direction d = normalof(e);
            if (std::ranges::none_of(wanted, [&](const direction& w) { return w == d; }))
                wanted.push_back(d);
            if (wanted.size() > 16) break;  // a curved face: its first directions
        }
        for (int e = 1; e <= nelems(); ++e) {
            const direction d = normalof(e);
            if (d != direction{} && std::ranges::any_of(wanted, [&](const direction& w) {
                    return samedirection(w, d, leastcosine);
                }))
                marks[std::size_t(e)] = true;
        }
        return;
    }
    while (!front.empty()) {
        const int e = front.back();
        front.pop_back();
        const direction own = normalof(e);
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
            for (const int other : at.at(int(elems(e, k)))) {
                if (marks[std::size_t(other)]) continue;
                if (q.way == selectways::face &&
                    (commonnodes(e, other) < 2 ||
                     !samedirection(own, normalof(other), leastcosine)))
                    continue;
                marks[std::size_t(other)] = true;
                front.push_back(other);
            }
    }
}

// --- the query ----------------------------------------------------------------------------------

static std::vector<int> listed(const std::vector<bool>& marks) {
    std::vector<int> items;
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
