// SPDX-License-Identifier: GPL-3.0-or-later
// Multifrontal elimination: Duff and Reid, The multifrontal solution of indefinite sparse symmetric
// linear equations, ACM Trans. Math. Softw. 9, 1983. Where the tree is cut into subtrees depends on
// the matrix alone, and children are added in a fixed order: so do the numbers.
#include "solver/equations/factor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>
#include <numeric>
#include <span>
#include <utility>

#include "solver/base/blas.h"
#include "solver/base/memory.h"
#include "solver/base/parallel.h"
#include "solver/equations/crew.h"
#include "solver/equations/inertia.h"
#include "solver/equations/supernodes.h"

static const double worthsharing = 1e7;  // operations of a front that pay for starting threads
static const std::size_t page = 4096;    // bytes of memory

namespace {
// Numbers without a first value.
class room {
  public:
    void allocate(std::int64_t count) {
        const std::size_t bytes = std::size_t(std::max<std::int64_t>(count, 1)) * sizeof(double);
        release();
        data = static_cast<double*>(std::aligned_alloc(page, (bytes + page - 1) / page * page));
        if (data == nullptr) throw std::bad_alloc();
    }
    void release() {
        std::free(data);
        data = nullptr;
    }
    room() = default;
    ~room() { release(); }
    room(room&& other) noexcept : data(std::exchange(other.data, nullptr)) {}
    room(const room&) = delete;
    room& operator=(const room&) = delete;
    double* data = nullptr;
};

// Consecutive rows of a child that are consecutive in its parent.
struct rowrun {
    int child, parent, count;
};
struct childpart {
    staircase shape;
    const double* update;
    std::vector<rowrun> runs;
};
// One front while it is worked on; the columns from `columns.columns` on are the update's.
struct openfront {
    staircase columns, update;
    double *l, *u;
    std::vector<childpart> children;
};

// What a thread works with.
struct worker {
    room stack;              // of updates
    double* end = nullptr;   // of those on it
    std::vector<int> local;  // of each unknown its row in the open front
};
}  // namespace

struct factor::inside {
    supernodetree tree;
    std::vector<std::int64_t> place;         // of each front's columns among the values
    std::vector<std::vector<int>> subtrees;  // supernodes, children first, the root last
    std::vector<int> top;                    // supernodes above the subtrees, children first
    std::vector<int> before;                 // of each of these: subtrees that come first
    std::int64_t stack = 0, topstack = 0;    // numbers that the updates within them take at most
    double bytes = 0;
    room values;
    std::vector<double*> updates;  // of supernodes that are eliminated and not yet added

    void cut();
    void measure();
    bool workfront(const sparsematrix& a, int s, std::vector<int>& local, double* u,
                   loopsharer* threads);
    bool worklist(const sparsematrix& a, std::span<const int> list, worker& w,
                  std::vector<room>& kept, loopsharer* threads);
    // Subtrees that threads may work on before they are needed: the updates of all of them at once
    // would take as much room as those of the top.
    static int ahead() { return threads() + 2; }
    // What a list of supernodes adds to the rows outside it, by rows of its root.
    using outside = std::vector<double>;
    // Where threads is null the front is the work of one.
    void forward(int s, double* x, int sides, int inner, double* outer,
                 const std::vector<int>& local, std::vector<double>& y, loopsharer* threads) const;
    void backward(int s, double* x, int sides, std::vector<double>& y, loopsharer* threads) const;
    void forwardlist(const std::vector<int>& list, double* x, int sides, std::vector<int>& local,
                     outside& outer) const;
    void addoutside(const std::vector<int>& list, const outside& outer, double* x, int sides) const;
    loopsharer* sharersof(int s, loopsharer* threads) const;
    void forwardall(double* x, int sides) const;
    void backwardall(double* x, int sides) const;
    std::int64_t unknowns() const { return tree.first.back(); }
};

factor::factor() : in(new inside) {
    openblas_set_num_threads(1);  // its own threads would spin in the way of ours
}

factor::~factor() = default;

// --- plan ---------------------------------------------------------------------------------------

// Children in the order that needs the least room for updates: Liu, On the storage requirement in
// the out-of-core multifrontal method, ACM Trans. Math. Softw. 12, 1986. Returns the room for each
// subtree.
static std::vector<std::int64_t> orderchildren(supernodetree& t) {
    std::vector<std::int64_t> need(std::size_t(t.size()));
    for (int s = 0; s < t.size(); ++s) {
        std::vector<int>& children = t.children[std::size_t(s)];
        const auto gain = [&](int c) { return need[std::size_t(c)] - t.update(c).size(); };
        std::stable_sort(children.begin(), children.end(),
                         [&](int a, int b) { return gain(a) > gain(b); });
        std::int64_t held = 0, most = 0;
        for (const int c : children) {
            most = std::max(most, held + need[std::size_t(c)]);
            held += t.update(c).size();
        }
        need[std::size_t(s)] = std::max(most, held + t.update(s).size());
    }
    return need;
}

static std::vector<int> postorder(const supernodetree& t, int root) {
    std::vector<int> list, open{root};
    while (!open.empty()) {  // root, last child, ... first child, reversed below
        const int s = open.back();
        open.pop_back();
        list.push_back(s);
        for (const int c : t.children[std::size_t(s)]) open.push_back(c);
    }
    std::reverse(list.begin(), list.end());
    return list;
}

// Takes the roots of heavy subtrees away until the rest falls into many even parts.
void factor::inside::cut() {
    const double parts = 32, least = 1e7;  // subtrees at least; operations worth a thread
    std::vector<double> load(std::size_t(tree.size()));
    for (int s = 0; s < tree.size(); ++s) {
        load[std::size_t(s)] = operationsof(tree, s);
        for (const int c : tree.children[std::size_t(s)])
            load[std::size_t(s)] += load[std::size_t(c)];
    }
    const double limit = std::max(tree.operations / parts, least);
    const auto light = [&](int s) { return load[std::size_t(s)] <= limit; };
    subtrees.clear();
    top.clear();
    before.clear();
    for (int root = 0; root < tree.size(); ++root) {
        if (tree.parent[std::size_t(root)] >= 0) continue;
        if (light(root)) {
            subtrees.push_back(postorder(tree, root));
            continue;
        }
        for (const int s : postorder(tree, root)) {
            if (light(s)) continue;
            top.push_back(s);
            const auto own = std::ptrdiff_t(subtrees.size());
            for (const int c : tree.children[std::size_t(s)])
                if (light(c)) subtrees.push_back(postorder(tree, c));
            std::stable_sort(subtrees.begin() + own, subtrees.end(),
                             [&](const auto& a, const auto& b) {
                                 return load[std::size_t(a.back())] > load[std::size_t(b.back())];
                             });
            before.push_back(int(subtrees.size()));
        }
    }
}

void factor::inside::measure() {
    const std::vector<std::int64_t> need = orderchildren(tree);
    cut();
    place.assign(1, 0);
    for (int s = 0; s < tree.size(); ++s) place.push_back(place.back() + tree.front(s).size());
    stack = topstack = 0;
    std::vector<double> kept(1, 0);  // by the subtrees before each
    for (const std::vector<int>& list : subtrees) {
        stack = std::max(stack, need[std::size_t(list.back())]);
        kept.push_back(kept.back() + double(tree.update(list.back()).size()));
    }
    double most = 0;
    int first = 0;
    for (const int last : before) {
        const int end = std::min(last + ahead(), int(subtrees.size()));
        most = std::max(most, kept[std::size_t(end)] - kept[std::size_t(first)]);
        first = last;
    }
    for (const int s : top) topstack = std::max(topstack, need[std::size_t(s)]);
    most += double(stack) * threads() + double(topstack);
    bytes = (double(place.back()) + most) * sizeof(double) +
            double(unknowns()) * threads() * sizeof(int);
}

void factor::analyse(const sparsematrix& a) {
    in->values.release();
    in->tree = findsupernodes(a);
    in->measure();
}

double factor::entries() const {
    return in->tree.entries;
}

double factor::operations() const {
    return in->tree.operations;
}

double factor::bytes() const {
    return in->bytes;
}

// --- elimination --------------------------------------------------------------------------------

// local: of each unknown its row in the parent. Runs end where the parent's own columns do.
static std::vector<rowrun> runsof(const supernodetree& t, int child, const std::vector<int>& local,
                                  int own) {
    std::vector<rowrun> runs;
    const int* const rows = t.rows(child);
    for (int i = 0; i < t.below(child); ++i) {
        const int at = local[std::size_t(rows[i])];
        const bool goeson =
            !runs.empty() && runs.back().parent + runs.back().count == at && at != own;
        if (goeson)
            ++runs.back().count;
        else
            runs.push_back({i, at, 1});
    }
    return runs;
}

// Adds the children to the columns from low on below high of the front.
static void addchildren(const openfront& f, int low, int high) {
    const int own = f.columns.columns;
    for (const childpart& child : f.children)
        for (std::size_t r = 0; r < child.runs.size(); ++r) {
            const rowrun& run = child.runs[r];
            const int begin = std::max(low, run.parent);
            const int end = std::min(high, run.parent + run.count);
            for (int c = begin; c < end; ++c) {
                const int source = run.child + c - run.parent;
                const double* const from = child.update + child.shape.column(source);
                double* const to =
                    c < own ? f.l + f.columns.column(c) : f.u + f.update.column(c - own) - own;
                for (int i = source, q = c; i < run.child + run.count; ++i, ++q) to[q] += from[i];
                for (std::size_t n = r + 1; n < child.runs.size(); ++n) {
                    const rowrun& next = child.runs[n];
                    double* const into = to + next.parent;
                    const double* const out = from + next.child;
                    for (int i = 0; i < next.count; ++i) into[i] += out[i];
                }
            }
        }
}

static void addchildren(const openfront& f, int low, int high, loopsharer* threads) {
    if (f.children.empty()) return;
    if (threads == nullptr) return addchildren(f, low, high);
    const int piece = 64;
    threads->each((high - low + piece - 1) / piece, [&](int i) {
        addchildren(f, low + i * piece, std::min(low + (i + 1) * piece, high));
    });
}

bool factor::inside::workfront(const sparsematrix& a, int s, std::vector<int>& local, double* u,
                               loopsharer* threads) {
    openfront f{tree.front(s), tree.update(s), values.data + place[std::size_t(s)], u, {}};
    const int first = tree.first[std::size_t(s)], own = f.columns.columns;
    std::iota(local.begin() + first, local.begin() + first + own, 0);
    for (int i = 0; i < tree.below(s); ++i) local[std::size_t(tree.rows(s)[i])] = own + i;
    std::fill_n(f.l, f.columns.size(), 0.0);
    for (int c = 0; c < own; ++c) {
        double* const to = f.l + f.columns.column(c);
        const auto j = std::size_t(first + c);
        for (auto i = std::size_t(a.start[j]); i < std::size_t(a.start[j + 1]); ++i)
            to[local[std::size_t(a.row[i])]] = a.value[i];
    }
    for (const int c : tree.children[std::size_t(s)])
        f.children.push_back(
            {tree.update(c), updates[std::size_t(c)], runsof(tree, c, local, own)});
    addchildren(f, 0, own, threads);
    if (!eliminate(f.columns, f.l, f.u, threads)) return false;
    addchildren(f, own, f.columns.rows, threads);
    return true;
}

// The updates lie on a stack: those of the children on top, and then the front's own in their
// place. Those that outlive the list have rooms of their own.
bool factor::inside::worklist(const sparsematrix& a, std::span<const int> list, worker& w,
                              std::vector<room>& kept, loopsharer* threads) {
    w.local.resize(std::size_t(unknowns()));
    for (const int s : list) {
        const auto at = std::size_t(s);
        const std::int64_t size = tree.update(s).size();
        const bool keep = threads == nullptr && s == list.back();
        if (keep) kept[at].allocate(size);
        double* const u = keep ? kept[at].data : w.end;
        const bool shared = operationsof(tree, s) > worthsharing;
        if (!workfront(a, s, w.local, u, shared ? threads : nullptr)) return false;
        double* begin = w.end;
        for (const int c : tree.children[at]) {
            if (kept[std::size_t(c)].data == nullptr)
                begin = std::min(begin, updates[std::size_t(c)]);
            kept[std::size_t(c)].release();
        }
        updates[at] = keep ? u : begin;
        if (!keep && begin != u) std::memmove(begin, u, std::size_t(size) * sizeof(double));
        w.end = keep ? begin : begin + size;
    }
    return true;
}

bool factor::factorise(const sparsematrix& a) {
    inside& f = *in;
    if (f.values.data == nullptr) {
        f.values.allocate(f.place.back());
        takememory(f.values.data, std::size_t(f.place.back()) * sizeof(double));
    }
    f.updates.assign(std::size_t(f.tree.size()), nullptr);
    std::vector<room> kept{std::size_t(f.tree.size())};
    worker above;
    above.stack.allocate(f.topstack);
    above.end = above.stack.data;
    std::vector<worker> workers{std::size_t(threads())};
    crew all;
    crew::plan plan{int(f.subtrees.size()), f.before, f.ahead(), {}, {}};
    plan.list = [&](int list, int thread) {
        worker& w = workers[std::size_t(thread)];
        if (w.stack.data == nullptr) w.stack.allocate(f.stack);
        w.end = w.stack.data;
        const bool good = f.worklist(a, f.subtrees[std::size_t(list)], w, kept, nullptr);
        if (list + threads() >= plan.lists) w.stack.release();  // the top needs the room
        return good;
    };
    plan.step = [&](int step) {
        const std::span<const int> one(f.top.data() + step, 1);
        return f.worklist(a, one, above, kept, &all);
    };
    return all.work(plan);
}

namespace {
struct leastpivot {
    double ratio = 1;
    std::int64_t unknown = 0;
    void meet(double other, std::int64_t at) {
        if (other >= ratio || std::isnan(ratio)) return;  // no number counts as the least
        ratio = other;
        unknown = at;
    }
};
}  // namespace

double factor::smallestpivot(const sparsematrix& a, std::int64_t& unknown) {
    const int piece = 256;  // fronts
    std::vector<leastpivot> found(std::size_t((in->tree.size() + piece - 1) / piece));
    parallelpieces(in->tree.size(), piece, [&](int begin, int end, int) {
        leastpivot& least = found[std::size_t(begin / piece)];
        for (int s = begin; s < end; ++s) {
            const staircase shape = in->tree.front(s);
            const double* const l = in->values.data + in->place[std::size_t(s)];
            for (int c = 0; c < shape.columns; ++c) {
                const std::int64_t j = in->tree.first[std::size_t(s)] + c;
                const double pivot = l[shape.column(c) + c];
                const double before = a.value[std::size_t(a.start[std::size_t(j)])];
                least.meet(pivot * pivot / before, j);
            }
        }
    });
    leastpivot least;
    for (const leastpivot& one : found) least.meet(one.ratio, one.unknown);
    unknown = least.unknown;
    return least.ratio;
}

// --- solution -----------------------------------------------------------------------------------

// Rows from `inner` on lie outside the subtree: what goes there is gathered in outer.
void factor::inside::forward(int s, double* x, int sides, int inner, double* outer,
                             const std::vector<int>& local, std::vector<double>& y,
                             loopsharer* threads) const {
    const staircase shape = tree.front(s);
    const int own = shape.columns, below = tree.below(s), first = tree.first[std::size_t(s)];
    const int* const rows = tree.rows(s);
    y.assign(std::size_t(shape.rows) * std::size_t(sides), 0);
    for (int k = 0; k < sides; ++k)
        std::copy_n(x + k * unknowns() + first, own, y.data() + std::int64_t(k) * shape.rows);
    solveforward(shape, values.data + place[std::size_t(s)], y.data(), sides, threads);
    for (int k = 0; k < sides; ++k) {
        const double* const from = y.data() + std::int64_t(k) * shape.rows;
        double* const to = x + k * unknowns();
        std::copy_n(from, own, to + first);
        for (int i = 0; i < below; ++i) {
            const int row = rows[i];
            if (row < inner)
                to[row] += from[own + i];
            else
                outer[std::int64_t(local[std::size_t(row)]) * sides + k] += from[own + i];
        }
    }
}

void factor::inside::backward(int s, double* x, int sides, std::vector<double>& y,
                              loopsharer* threads) const {
    const staircase shape = tree.front(s);
    const int own = shape.columns, below = tree.below(s), first = tree.first[std::size_t(s)];
    const int* const rows = tree.rows(s);
    y.resize(std::size_t(shape.rows) * std::size_t(sides));
    for (int k = 0; k < sides; ++k) {
        double* const to = y.data() + std::int64_t(k) * shape.rows;
        const double* const from = x + k * unknowns();
        std::copy_n(from + first, own, to);
        for (int i = 0; i < below; ++i) to[own + i] = from[rows[i]];
    }
    solvebackward(shape, values.data + place[std::size_t(s)], y.data(), sides, threads);
    for (int k = 0; k < sides; ++k)
        std::copy_n(y.data() + std::int64_t(k) * shape.rows, own, x + k * unknowns() + first);
}

void factor::inside::forwardlist(const std::vector<int>& list, double* x, int sides,
                                 std::vector<int>& local, outside& outer) const {
    const int root = list.back(), below = tree.below(root);
    local.resize(std::size_t(unknowns()));
    for (int k = 0; k < below; ++k) local[std::size_t(tree.rows(root)[k])] = k;
    outer.assign(std::size_t(below) * std::size_t(sides), 0);
    std::vector<double> y;
    for (const int s : list)
        forward(s, x, sides, tree.first[std::size_t(root) + 1], outer.data(), local, y, nullptr);
}

void factor::inside::addoutside(const std::vector<int>& list, const outside& outer, double* x,
                                int sides) const {
    const int root = list.back();
    for (int r = 0; r < tree.below(root); ++r)
        for (int k = 0; k < sides; ++k)
            x[k * unknowns() + tree.rows(root)[r]] +=
                outer[std::size_t(r) * std::size_t(sides) + std::size_t(k)];
}

// Large fronts wait for memory: the threads read them together.
loopsharer* factor::inside::sharersof(int s, loopsharer* threads) const {
    const std::int64_t worth = 1 << 17;  // numbers
    return tree.front(s).size() > worth ? threads : nullptr;
}

void factor::inside::forwardall(double* x, int sides) const {
    std::vector<outside> outer(subtrees.size());
    std::vector<std::vector<int>> locals{std::size_t(threads())};
    std::vector<double> y;
    crew all;
    crew::plan plan{int(subtrees.size()), before, int(subtrees.size()), {}, {}};
    plan.list = [&](int list, int thread) {
        forwardlist(subtrees[std::size_t(list)], x, sides, locals[std::size_t(thread)],
                    outer[std::size_t(list)]);
        return true;
    };
    plan.step = [&](int step) {
        const auto at = std::size_t(step);
        for (auto i = std::size_t(step == 0 ? 0 : before[at - 1]); i < std::size_t(before[at]); ++i)
            addoutside(subtrees[i], outer[i], x, sides);
        forward(top[at], x, sides, int(unknowns()), nullptr, {}, y, sharersof(top[at], &all));
        return true;
    };
    all.work(plan);
}

void factor::inside::backwardall(double* x, int sides) const {
    std::vector<double> y;
    crew all;
    crew::plan plan{0, std::vector<int>(top.size(), 0), 0, {}, {}};
    plan.step = [&](int step) {
        const int s = top[top.size() - 1 - std::size_t(step)];
        backward(s, x, sides, y, sharersof(s, &all));
        return true;
    };
    all.work(plan);
    parallelpieces(int(subtrees.size()), 1, [&](int begin, int end, int) {
        std::vector<double> part;
        for (int i = begin; i < end; ++i) {
            const std::vector<int>& list = subtrees[std::size_t(i)];
            for (auto s = list.rbegin(); s != list.rend(); ++s)
                backward(*s, x, sides, part, nullptr);
        }
    });
}

void factor::solve(double* x, int columns, triangles which) {
    const int most = 32;  // right sides at a time
    for (int c = 0; c < columns; c += most) {
        const int sides = std::min(most, columns - c);
        double* const from = x + c * in->unknowns();
        if (which != triangles::upper) in->forwardall(from, sides);
        if (which != triangles::lower) in->backwardall(from, sides);
    }
}

std::int64_t factor::countnegative(const sparsematrix& a, double mostoperations) {
    return ::countnegative(a, mostoperations);
}
