// SPDX-License-Identifier: GPL-3.0-or-later
// Points joined and pieces split through grids.
#include "exchange/drawn.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <span>
#include <unordered_set>
#include <utility>

#include "core/numtext.h"

static triple minus(const triple& a, const triple& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

static double dot(const triple& a, const triple& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

static double lengthof(const triple& a) {
    return std::sqrt(dot(a, a));
}

static triple between(const triple& a, const triple& b, double part) {
    triple at;
    for (std::size_t k = 0; k < 3; ++k) at[k] = a[k] + part * (b[k] - a[k]);
    return at;
}

// --- grid ---------------------------------------------------------------------------------------

using cell = std::array<std::int64_t, 3>;

static cell cellof(const triple& at, double side) {
    const double farthest = 1e17;  // cells; beyond it places share theirs
    cell c;
    for (std::size_t k = 0; k < 3; ++k)
        c[k] = std::int64_t(std::clamp(std::floor(at[k] / side), -farthest, farthest));
    return c;
}

static std::uint64_t keyof(const cell& c) {
    std::uint64_t h = std::uint64_t(c[0]) * 0x9E3779B97F4A7C15u;
    h = (h ^ (h >> 29) ^ std::uint64_t(c[1])) * 0xBF58476D1CE4E5B9u;
    h = (h ^ (h >> 32) ^ std::uint64_t(c[2])) * 0x94D049BB133111EBu;
    return h ^ (h >> 31);
}

// Calls take(key) for each cell of the box about a place that reaches so far.
template <typename Take>
static void eachcell(const triple& low, const triple& high, double reach, double side, Take take) {
    triple a = low, b = high;
    for (std::size_t k = 0; k < 3; ++k) {
        a[k] -= reach;
        b[k] += reach;
    }
    const cell first = cellof(a, side), last = cellof(b, side);
    for (std::int64_t x = first[0]; x <= last[0]; ++x)
        for (std::int64_t y = first[1]; y <= last[1]; ++y)
            for (std::int64_t z = first[2]; z <= last[2]; ++z) take(keyof({x, y, z}));
}

// --- points -------------------------------------------------------------------------------------

pointjoiner::pointjoiner(imported& into, double reach) : found(into), distance(reach) {
    const double tolerances = 4;
    side = distance > 0 ? distance * tolerances : 1;
}

int pointjoiner::join(const triple& at) {
    int met = 0;
    eachcell(at, at, distance, side, [&](std::uint64_t key) {
        const auto head = first.find(key);
        for (int n = head == first.end() ? 0 : head->second; n != 0; n = next[std::size_t(n) - 1])
            if ((met == 0 || n < met) &&
                lengthof(minus(found.nodes[std::size_t(n) - 1], at)) <= distance)
                met = n;
    });
    if (met != 0) return met;
    const int n = found.addnode(at);
    next.resize(std::size_t(n), 0);
    int& head = first[keyof(cellof(at, side))];
    next.back() = head;
    head = n;
    return n;
}

double extentof(const drawn& drawing) {
    triple low, high;
    low.fill(HUGE_VAL);
    high.fill(-HUGE_VAL);
    const auto look = [&](const triple& at) {
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], at[k]);
            high[k] = std::max(high[k], at[k]);
        }
    };
    for (const drawnpiece& p : drawing.pieces) look(p.from), look(p.to);
    for (const drawnface& f : drawing.faces)
        for (int c = 0; c < f.count; ++c) look(f.corners[std::size_t(c)]);
    for (const triple& at : drawing.points) look(at);
    return low[0] > high[0] ? 0 : lengthof(minus(high, low));
}

// --- pieces by the cells that they come near ----------------------------------------------------

namespace {

class piecegrid {
  public:
    using entry = std::pair<std::uint64_t, std::uint32_t>;  // cell, place of the piece

    piecegrid(const std::vector<drawnpiece>& list, double distance)
        : pieces(list), reach(distance) {
        choosecells();
        for (std::size_t i = 0; i < pieces.size(); ++i) place(std::uint32_t(i));
        std::ranges::sort(all);
    }
    const std::vector<entry>& entries() const { return all; }
    // The entries of the cell of a place: no other piece comes nearer to it than the reach.
    std::span<const entry> near(const triple& at) const {
        const auto key = keyof(cellof(at, side));
        const auto begin = std::ranges::lower_bound(all, key, {}, &entry::first);
        const auto end = std::ranges::upper_bound(all, key, {}, &entry::first);
        return {begin, end};
    }

  private:
    // Cells about as wide as pieces are long; never so narrow that long pieces fill the memory.
    void choosecells() {
        std::vector<double> lengths;
        double total = 0;
        for (const drawnpiece& p : pieces) {
            lengths.push_back(lengthof(minus(p.to, p.from)));
            total += lengths.back();
        }
        const auto middle = lengths.begin() + long(lengths.size() / 2);
        std::ranges::nth_element(lengths, middle);
        const double entriesapiece = 4;
        side = std::max({*middle, total / (entriesapiece * double(pieces.size())), reach * 4});
        if (!(side > 0)) side = 1;
    }
    // A piece is in every cell that it comes near, stretch by stretch.
    void place(std::uint32_t i) {
        const drawnpiece& p = pieces[i];
        const double most = 1e7;
        const double length = lengthof(minus(p.to, p.from));
        const auto stretches = long(std::min(std::ceil(length / side), most)) + 1;
        std::vector<std::uint64_t> keys;
        for (long s = 0; s < stretches; ++s) {
            const triple a = between(p.from, p.to, double(s) / double(stretches));
            const triple b = between(p.from, p.to, double(s + 1) / double(stretches));
            triple low, high;
            for (std::size_t k = 0; k < 3; ++k) {
                low[k] = std::min(a[k], b[k]);
                high[k] = std::max(a[k], b[k]);
            }
            eachcell(low, high, reach, side, [&](std::uint64_t key) { keys.push_back(key); });
        }
        std::ranges::sort(keys);
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
        for (const std::uint64_t key : keys) all.push_back({key, i});
    }

    const std::vector<drawnpiece>& pieces;
    double reach, side = 1;
    std::vector<entry> all;
};

}  // namespace

// --- lines that meet ----------------------------------------------------------------------------

namespace {

class splitter {
  public:
    splitter(std::vector<drawnpiece>& list, double reach, const std::string& file)
        : pieces(list), distance(reach), name(file), cuts(list.size()) {}
    // Returns how many pieces were cut.
    long run() {
        const piecegrid grid(pieces, distance);
        const auto& entries = grid.entries();
        for (std::size_t begin = 0; begin < entries.size();) {
            std::size_t end = begin + 1;
            while (end < entries.size() && entries[end].first == entries[begin].first) ++end;
            for (std::size_t i = begin; i < end; ++i)
                for (std::size_t j = i + 1; j < end; ++j)
                    if (entries[i].second != entries[j].second)
                        meet(entries[i].second, entries[j].second);
            readingprogress(name, double(end) / double(entries.size()));
            begin = end;
        }
        return cutall();
    }

  private:
    // A cut within the piece, farther from its ends than what is joined to them.
    void cut(std::uint32_t i, double part) {
        const double length = lengthof(minus(pieces[i].to, pieces[i].from));
        if (part * length > distance && (1 - part) * length > distance) cuts[i].push_back(part);
    }
    // An end of one piece that lies on the other.
    void cutatend(std::uint32_t i, const triple& end) {
        const drawnpiece& p = pieces[i];
        const triple along = minus(p.to, p.from);
        const double square = dot(along, along);
        if (!(square > 0)) return;
        const double part = dot(minus(end, p.from), along) / square;
        if (part <= 0 || part >= 1) return;
        if (lengthof(minus(between(p.from, p.to, part), end)) <= distance) cut(i, part);
    }
    void meet(std::uint32_t i, std::uint32_t j) {
        const drawnpiece &p = pieces[i], &q = pieces[j];
        cutatend(i, q.from);
        cutatend(i, q.to);
        cutatend(j, p.from);
        cutatend(j, p.to);
        // The nearest points of the two straight lines.
        const triple u = minus(p.to, p.from), v = minus(q.to, q.from), w = minus(p.from, q.from);
        const double a = dot(u, u), b = dot(u, v), c = dot(v, v), d = dot(u, w), e = dot(v, w);
        const double slant = a * c - b * b, parallel = 1e-12;  // of a c: the sine squared
        if (!(slant > parallel * a * c)) return;
        const double s = (b * e - c * d) / slant, t = (a * e - b * d) / slant;
        if (s <= 0 || s >= 1 || t <= 0 || t >= 1) return;
        if (lengthof(minus(between(p.from, p.to, s), between(q.from, q.to, t))) > distance) return;
        cut(i, s);
        cut(j, t);
    }
    long cutall() {
        long count = 0;
        std::vector<drawnpiece> result;
        result.reserve(pieces.size());
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            std::vector<double>& at = cuts[i];
            std::ranges::sort(at);
            const drawnpiece whole = pieces[i];
            const double length = lengthof(minus(whole.to, whole.from));
            drawnpiece part = whole;
            double last = 0;
            bool any = false;
            for (const double s : at) {
                if ((s - last) * length <= distance) continue;
                part.iscut = true;
                part.to = between(whole.from, whole.to, s);
                result.push_back(part);
                part.from = part.to;
                last = s;
                any = true;
            }
            part.to = whole.to;
            result.push_back(part);
            count += any;
        }
        pieces = std::move(result);
        return count;
    }

    std::vector<drawnpiece>& pieces;
    double distance;
    const std::string& name;
    std::vector<std::vector<double>> cuts;  // parts of the length
};

}  // namespace

long splitpieces(drawn& drawing, double distance, const std::string& file) {
    return drawing.pieces.size() < 2 ? 0 : splitter(drawing.pieces, distance, file).run();
}

// --- model --------------------------------------------------------------------------------------

namespace {

class builder {
  public:
    builder(imported& into, double distance) : found(into), joiner(into, distance) {}

    void add(const drawnpiece& p, double longest) {
        const double length = lengthof(minus(p.to, p.from)), most = 1e6;
        const long parts = long(std::clamp(std::ceil(length / longest * (1 - 1e-9)), 1.0, most));
        int from = joiner.join(p.from);
        for (long i = 1; i <= parts; ++i) {
            const int to =
                joiner.join(i == parts ? p.to : between(p.from, p.to, double(i) / double(parts)));
            if (from == to)
                found.report.skipped("Lines whose ends are one node");
            else if (!pairs
                          .insert(std::uint64_t(std::min(from, to)) << 32 |
                                  unsigned(std::max(from, to)))
                          .second)
                found.report.changed("Lines that lie on another, left out");
            else
                note(p, found.addelement(p.type, {from, to, 0, 0}, p.group));
            from = to;
        }
    }
    void add(const drawnface& f) {
        std::array<int, 4> corners{};
        int count = 0;
        for (int c = 0; c < f.count; ++c) {
            const int n = joiner.join(f.corners[std::size_t(c)]);
            if (std::find(corners.begin(), corners.begin() + count, n) == corners.begin() + count)
                corners[std::size_t(count++)] = n;
        }
        if (count < 3)
            found.report.skipped("Faces with fewer than three corners apart");
        else
            found.addelement(count == 3 ? f.triangle : f.type, corners, f.group);
    }
    int add(const triple& point) { return joiner.join(point); }
    drawnelements elements;

  private:
    void note(const drawnpiece& p, int e) {
        if (p.iscurved) elements.curved.push_back(e);
        if (p.iscut) elements.cut.push_back(e);
    }
    imported& found;
    pointjoiner joiner;
    std::unordered_set<std::uint64_t> pairs;
};

}  // namespace

drawnelements buildmodel(const drawn& drawing, double distance, double longest, imported& found) {
    builder build(found, distance);
    long done = 0;
    const long look = 16384;  // items between two looks at the clock
    const double total = double(drawing.pieces.size() + drawing.faces.size());
    const auto progress = [&] {
        if (++done % look == 0) readingprogress(found.report.file, double(done) / total);
    };
    for (const drawnpiece& p : drawing.pieces) build.add(p, longest), progress();
    for (const drawnface& f : drawing.faces) build.add(f), progress();
    std::vector<int> drawnnodes;
    for (const triple& at : drawing.points) drawnnodes.push_back(build.add(at));
    long points = long(drawing.points.size()) + 2 * long(drawing.pieces.size());
    for (const drawnface& f : drawing.faces) points += f.count;
    found.report.changed("Ends and corners joined within " + roughly(distance),
                         std::max(0L, points - long(found.nodes.size())));
    dropunused(found, drawnnodes);
    return std::move(build.elements);
}

// --- ends that meet nothing ---------------------------------------------------------------------

namespace {

// Ends of lines that stop a little before another line or its end, which is a slip of the drawing
// more often than meant.
class gapfinder {
  public:
    gapfinder(imported& into, const joinings& how, double widest)
        : found(into), joined(how), gap(widest), count(into.nodes.size() + 1) {
        for (const importedelement& e : found.elements) {
            if (e.corners[1] == 0 || e.corners[2] != 0) continue;
            drawnpiece p;
            p.from = at(e.corners[0]);
            p.to = at(e.corners[1]);
            pieces.push_back(p);
            ends.push_back({e.corners[0], e.corners[1]});
            for (const int n : ends.back()) ++count[std::size_t(n)];
        }
        listlines();
    }
    void tell() {
        if (pieces.size() < 2) return;
        const piecegrid grid(pieces, gap);
        std::vector<int> open;
        double widest = 0;
        for (int n = 1; n <= int(found.nodes.size()); ++n) {
            if (!isend(n)) continue;
            // Beside a short line its neighbours are near by right.
            double nearest = std::min(gap, shortest(n) / 2);
            const double least = nearest;
            for (const auto& [key, i] : grid.near(at(n))) nearest = std::min(nearest, gapto(n, i));
            if (nearest >= least) continue;
            open.push_back(n);
            widest = std::max(widest, nearest);
        }
        if (open.empty()) return;
        const std::string within = roughly(roundedup(widest));
        found.report.warn(
            (open.size() == 1 ? "An end stops" : numbertext(long(open.size())) + " ends stop") +
            " within " + within + " of another line and " + (open.size() == 1 ? "is" : "are") +
            " not joined; " + within + " in \"Join ends within\" joins " +
            (open.size() == 1 ? "it" : "them"));
        for (const int n : open) found.report.about(reportitems::nodes, n);
    }

  private:
    const triple& at(int n) const { return found.nodes[std::size_t(n) - 1]; }
    // The lines of each node, one list after the other; count becomes where each begins.
    void listlines() {
        std::exclusive_scan(count.begin(), count.end(), count.begin(), std::size_t(0));
        lines.resize(2 * pieces.size());
        std::vector<std::size_t> next = count;
        for (std::size_t i = 0; i < ends.size(); ++i)
            for (const int n : ends[i]) lines[next[std::size_t(n)]++] = std::uint32_t(i);
        count.push_back(lines.size());
    }
    std::span<const std::uint32_t> linesof(int n) const {
        const std::size_t first = count[std::size_t(n)];
        return std::span(lines).subspan(first, count[std::size_t(n) + 1] - first);
    }
    int otherend(std::uint32_t i, int n) const { return ends[i][0] == n ? ends[i][1] : ends[i][0]; }
    // No line goes on at this node about as straight as another comes.
    bool isend(int n) const {
        const std::size_t most = 16;  // lines of a node that are looked at
        const auto list = linesof(n).first(std::min(linesof(n).size(), most));
        const double straight = -0.9;  // cosine
        for (std::size_t i = 0; i < list.size(); ++i)
            for (std::size_t j = i + 1; j < list.size(); ++j) {
                const triple a = minus(at(otherend(list[i], n)), at(n));
                const triple b = minus(at(otherend(list[j], n)), at(n));
                if (dot(a, b) < straight * lengthof(a) * lengthof(b)) return false;
            }
        return !list.empty();
    }
    double shortest(int n) const {
        double least = HUGE_VAL;
        for (const std::uint32_t i : linesof(n))
            least = std::min(least, lengthof(minus(pieces[i].to, pieces[i].from)));
        return least;
    }
    // How far a node lies from a line; beyond all where it meets it or is not to meet it.
    double gapto(int n, std::uint32_t i) const {
        if (ends[i][0] == n || ends[i][1] == n) return HUGE_VAL;
        const drawnpiece& p = pieces[i];
        const triple along = minus(p.to, p.from);
        double part = std::clamp(dot(minus(at(n), p.from), along) / dot(along, along), 0.0, 1.0);
        if (!joined.split) part = std::round(part);
        const double distance = lengthof(minus(between(p.from, p.to, part), at(n)));
        const bool isatend = part <= 0 || part >= 1;
        return distance > (isatend ? joined.ends : joined.lines) ? distance : HUGE_VAL;
    }
    // To two digits, so that what is told reaches.
    static double roundedup(double number) {
        const double unit = std::pow(10, std::floor(std::log10(number)) - 1);
        return std::ceil(number / unit * (1 - 1e-9)) * unit;
    }

    imported& found;
    const joinings& joined;
    double gap;
    std::vector<drawnpiece> pieces;
    std::vector<std::array<int, 2>> ends;  // their nodes
    std::vector<std::size_t> count;
    std::vector<std::uint32_t> lines;
};

}  // namespace

void tellgaps(imported& found, const joinings& how, double widest) {
    gapfinder(found, how, widest).tell();
}
