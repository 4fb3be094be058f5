// SPDX-License-Identifier: GPL-3.0-or-later
// Merging by a hashed grid of places and by hashed keys of corners. The outcome is that of the
// sweep over all pairs.
#include "edit/merge.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <numeric>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "edit/nodegrid.h"
#include "files/saveset.h"

bool isnear(const float* a, const float* b) {
    const double dx = double(a[0]) - b[0], dy = double(a[1]) - b[1], dz = double(a[2]) - b[2];
    if (!(std::fabs(dx) < mergetol)) return false;
    if (!(std::fabs(dy) < mergetol)) return false;
    if (!(std::fabs(dz) < mergetol)) return false;
    return std::sqrt(dx * dx + dy * dy + dz * dz) < mergetol;
}

namespace {

// Which node stands for each: itself, or the one it was merged into.
struct survivors {
    explicit survivors(int count) : of(std::size_t(count) + 1) {
        std::iota(of.begin(), of.end(), 0);
    }
    int find(int n) {
        while (of[std::size_t(n)] != n) {
            of[std::size_t(n)] = of[std::size_t(of[std::size_t(n)])];
            n = of[std::size_t(n)];
        }
        return n;
    }
    bool alive(int n) const { return of[std::size_t(n)] == n; }
    std::vector<int> of;
};

}  // namespace

static void mergenodepair(int keep, int drop, survivors& survivor) {
    survivor.of[std::size_t(drop)] = keep;
}

// All nodes near the selected one, in number order from the first; when a lower one takes its
// place the search goes on from there with that node's place.
static int mergeone(int selected, const nodegrid& grid, survivors& survivor) {
    int keep = survivor.find(selected), passed = 0, merged = 0;
    for (;;) {
        const auto place = nodes.row(0, keep);
        int found = 0;
        grid.around(place.data(), [&](int n) {
            if (n <= passed || n == keep || !survivor.alive(n) || (found != 0 && n >= found))
                return;
            if (isnear(place.data(), nodes.row(0, n).data())) found = n;
        });
        if (found == 0) return merged;
        passed = found;
        ++merged;
        mergenodepair(std::min(found, keep), std::max(found, keep), survivor);
        keep = std::min(found, keep);
    }
}

// New numbers of the nodes after those that were merged are taken out.
static newnumbers numbersaftermerge(survivors& survivor) {
    const int count = nnodes();
    newnumbers number(std::size_t(count) + 1, 0);
    int c = 0;
    for (int n = 1; n <= count; ++n)
        if (survivor.alive(n)) number[std::size_t(n)] = ++c;
    for (int n = 1; n <= count; ++n)
        if (!survivor.alive(n)) number[std::size_t(n)] = number[std::size_t(survivor.find(n))];
    return number;
}

// Elements that lose their shape by the new numbers: two of their corners become one node.
static std::vector<int> collapsing(const newnumbers& number) {
    std::vector<int> found;
    const auto doubles = [](int elnn, auto corner) {
        int count = 0;
        for (int k = 2; k <= elnn; ++k)
            for (int j = 1; j < k; ++j) count += corner(k) == corner(j);
        return count;
    };
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        const auto row = elems.row(e);
        const auto before = [&](int k) { return int(row[std::size_t(k)]); };
        const auto after = [&](int k) {
            const int n = before(k);
            return n >= 1 && std::size_t(n) < number.size() ? number[std::size_t(n)] : n;
        };
        if (doubles(elnn, after) > doubles(elnn, before)) found.push_back(e);
    }
    return found;
}

// A quadrilateral with three corners left goes on as the triangle of its kind: SHELL4 as SHELL3.
static bool maketriangle(int e) {
    const int type = int(elems(e, 0));
    if (nodesoftype(elems(e, 0)) != 4) return false;
    std::vector<float> left;
    for (int k = 1; k <= 4; ++k)
        if (elems(e, k) != elems(e, k % 4 + 1)) left.push_back(elems(e, k));
    if (left.size() != 3 || left[0] == left[2]) return false;
    std::string name = eltypname(type);
    if (!name.ends_with('4')) return false;
    name.back() = '3';
    const int triangle = findtype(name);
    if (triangle < 1 || eltypnodes(triangle) != 3) return false;
    elems(e, 0) = float(triangle);
    for (int k = 1; k <= 3; ++k) elems(e, k) = left[std::size_t(k) - 1];
    elems(e, 4) = 0;
    return true;
}

// What has lost its shape leaves the model, and the user is told.
static void dropcollapsed(const std::vector<int>& collapsed) {
    if (collapsed.empty()) return;
    int triangles = 0;
    for (const int e : collapsed)
        if (maketriangle(e))
            ++triangles;
        else
            elems(e, 0) = 0;
    const int gone = int(collapsed.size()) - triangles;
    packelems();
    compactbc();
    std::string text = numbertext(int(collapsed.size())) +
                       " element(s) lost their shape because nodes of theirs were merged:";
    if (gone > 0) text += " " + numbertext(gone) + " removed";
    if (triangles > 0) text += (gone > 0 ? ", " : " ") + numbertext(triangles) + " made triangles";
    theplatform().message(text + ". The merge tolerance is " + numbertext(mergetol) + ".",
                          icons::exclamation);
}

// candidate(i) for i = 1..count are the nodes that merge with all others.
template <typename Candidate>
static int mergecandidates(int count, Candidate candidate) {
    if (count == 0 || !(mergetol > 0)) return 0;
    const nodegrid grid(nnodes(), [](int n) { return nodes.row(0, n).data(); });
    survivors survivor(nnodes());
    int merged = 0;
    for (int i = 1; i <= count; ++i) {
        const int n = candidate(i);
        if (n < 1 || n > nnodes() || grid.isalone(n)) continue;
        merged += mergeone(n, grid, survivor);
    }
    if (merged == 0) return 0;
    const newnumbers number = numbersaftermerge(survivor);
    const std::vector<int> collapsed = collapsing(number);
    followitems(items::node, number);
    closeitems(items::node, number);
    dropcollapsed(collapsed);
    return merged;
}

int mergenodes() {
    return mergecandidates(nodesel(0), [](int i) { return nodesel(i); });
}

int newplaces() {
    const int count = int(tmpnodes(0, 0)), before = nnodes();
    const auto place = [before](int n) {
        return n <= before ? nodes.row(0, n).data() : tmpnodes.row(n - before).data() + 1;
    };
    if (!automergenodes || !(mergetol > 0)) return count;
    const nodegrid grid(before + count, place);
    int places = 0;
    for (int n = before + 1; n <= before + count; ++n) {
        bool met = false;
        if (grid.isalone(n)) {
            ++places;
            continue;
        }
        grid.around(place(n),
                    [&](int other) { met = met || (other < n && isnear(place(n), place(other))); });
        places += !met;
    }
    return places;
}

// --- elements -----------------------------------------------------------------------------------

namespace {
struct elementkey {
    std::array<int, 6> part{};  // type, group, corners in ascending order
    int element = 0;
};
}  // namespace

static elementkey keyof(int e) {
    elementkey key;
    const auto row = elems.row(e);
    key.part = {int(row[0]), egroup(e), 0, 0, 0, 0};
    const int elnn = nodesoftype(row[0]);
    for (int k = 1; k <= elnn; ++k) {  // into their place among the corners before
        const int corner = int(row[std::size_t(k)]);
        std::size_t at = std::size_t(k) + 1;
        for (; at > 2 && key.part[at - 1] > corner; --at) key.part[at] = key.part[at - 1];
        key.part[at] = corner;
    }
    key.element = e;
    return key;
}

// Keys in the order of their parts, then of the element: doubles stand behind their first.
static std::vector<elementkey> sortedkeys() {
    std::vector<elementkey> keys;
    for (int e = 1; e <= nelems(); ++e)
        if (elems(e, 0) != 0) keys.push_back(keyof(e));
    std::ranges::sort(keys, [](const elementkey& a, const elementkey& b) {
        return a.part != b.part ? a.part < b.part : a.element < b.element;
    });
    return keys;
}

namespace {
// Elements by their keys, each looked for among those before it.
class elementtable {
  public:
    explicit elementtable(std::size_t count) {
        std::size_t size = 16;
        while (size < count * 2) size *= 2;
        places.resize(size);
    }
    // False where an equal one stands already.
    bool add(const elementkey& key) {
        const std::uint64_t hash = hashof(key);
        const auto tag = unsigned(hash >> 32);
        for (std::size_t at = hash & (places.size() - 1);; at = (at + 1) & (places.size() - 1)) {
            if (places[at].element == 0) {
                places[at] = {key.element, tag};
                return true;
            }
            if (places[at].tag == tag && keyof(places[at].element).part == key.part) return false;
        }
    }
    static std::uint64_t hashof(const elementkey& key) {
        std::uint64_t h = 0;
        for (const int part : key.part) {
            h = (h ^ std::uint64_t(unsigned(part))) * 0x9E3779B97F4A7C15u;
            h ^= h >> 32;
        }
        return h;
    }

  private:
    struct place {
        int element = 0;
        unsigned tag = 0;  // more of the hash: most other elements differ in it
    };
    std::vector<place> places;  // open addressing
};
}  // namespace

// Elements that share the hash of another: doubles are among them, few others.
static std::vector<int> elementswithcompany() {
    const int count = nelems();
    std::vector<unsigned> hashes(std::size_t(count) + 1);
    crowdcounter crowds{std::size_t(count)};
    for (int e = 1; e <= count; ++e) {
        if (elems(e, 0) == 0) continue;
        hashes[std::size_t(e)] = unsigned(elementtable::hashof(keyof(e)));
        crowds.add(hashes[std::size_t(e)]);
    }
    std::vector<int> found;
    for (int e = 1; e <= count; ++e)
        if (elems(e, 0) != 0 && crowds.of(hashes[std::size_t(e)]) > 1) found.push_back(e);
    return found;
}

int mergeelements() {
    const std::vector<int> candidates = elementswithcompany();
    elementtable table{candidates.size()};
    int merged = 0;
    for (const int e : candidates) {
        if (table.add(keyof(e))) continue;
        elems(e, 0) = 0;
        ++merged;
    }
    if (merged == 0) return 0;
    packelems();
    return merged;
}

// --- all at once --------------------------------------------------------------------------------

std::string mergeall() {
    const int merged = mergecandidates(nnodes(), [](int i) { return i; });
    const int doubles = mergeelements();
    std::string text =
        numbertext(merged) + " node(s) and " + numbertext(doubles) + " double element(s) merged";
    if (const std::string note = tolerancenote(); !note.empty()) text += ". " + note;
    return text;
}

static float largestcoordinate() {
    float largest = 0;
    const auto look = [&](const float* at) {
        for (int k = 0; k < 3; ++k) largest = std::max(largest, std::fabs(at[k]));
    };
    for (int n = 1; n <= nnodes(); ++n) look(nodes.row(0, n).data());
    for (int n = 1; n <= int(tmpnodes(0, 0)); ++n) look(tmpnodes.row(n).data() + 1);
    return largest;
}

static float stepat(float coordinate) {
    return std::nextafter(coordinate, std::numeric_limits<float>::infinity()) - coordinate;
}

double coordinatestep() {
    return double(stepat(largestcoordinate()));
}

std::string tolerancenote() {
    const float largest = largestcoordinate(), step = stepat(largest);
    if (!(mergetol > 0) || mergetol >= double(step) || !std::isfinite(step)) return "";
    return "The merge tolerance " + numbertext(mergetol) +
           " is less than the step of coordinates, " + numbertext(step) + " at " +
           numbertext(largest) +
           ": nodes that should meet may stay apart. Set a larger tolerance in General Options";
}

// --- reports ------------------------------------------------------------------------------------

// Fields at the print zones of 14 columns.
static std::string inprintzones(const std::vector<std::string>& fields) {
    const std::size_t zone = 14;
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line.resize((line.size() / zone + 1) * zone, ' ');
        line += field;
    }
    return line;
}

// The report has the name of the file that holds the user's comment.
static bool maytakecomment() {
    const bool noted = !commenttext.empty() && commenttext != "No Info";
    if (!noted || !std::filesystem::exists(modelname + ".txt")) return true;
    return theplatform().yes(
        modelname +
        ".txt holds the comment of the model. The report takes its place until the "
        "model is saved again. Continue?");
}

static int writereport(const std::vector<std::string>& lines) {
    int written = -1;
    if (!maytakecomment()) return written;
    guarded(
        [&] {
            if (modelname.empty() || modelname == "None")
                throw runtimeerror{errpathaccess,
                                   "The model has no name yet; save it first, the report is "
                                   "written beside it"};
            textout out(modelname + ".txt");
            for (const std::string& line : lines) out.raw(line).endline();
            out.commit();
            notewritten(modelname, ".txt");
            written = int(lines.size());
        },
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
    return written;
}

int findmergenodes() {
    const nodegrid grid(nnodes(), [](int n) { return nodes.row(0, n).data(); });
    std::vector<std::string> lines;
    for (int a = 1; a <= nnodes() && mergetol > 0; ++a) {
        if (grid.isalone(a)) continue;
        std::vector<int> near;
        grid.around(nodes.row(0, a).data(), [&](int b) {
            if (b > a && isnear(nodes.row(0, a).data(), nodes.row(0, b).data())) near.push_back(b);
        });
        std::ranges::sort(near);
        near.erase(std::unique(near.begin(), near.end()), near.end());
        for (const int b : near)
            lines.push_back(
                inprintzones({" " + numbertext(a), " " + numbertext(b), nodename(a), nodename(b)}));
    }
    return writereport(lines);
}

int finddoubleelems() {
    const std::vector<elementkey> keys = sortedkeys();
    std::vector<std::string> lines;
    for (std::size_t i = 1, first = 0; i < keys.size(); ++i) {
        if (keys[i].part != keys[first].part) {
            first = i;
            continue;
        }
        std::vector<std::string> fields = {" " + numbertext(keys[first].element),
                                           " " + numbertext(keys[i].element)};
        for (const int e : {keys[first].element, keys[i].element})
            for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k)
                fields.push_back(" " + numbertext(elems(e, k)));
        lines.push_back(inprintzones(fields));
    }
    return writereport(lines);
}
