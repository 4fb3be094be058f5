// SPDX-License-Identifier: GPL-3.0-or-later
// A separator is found, the two parts that it leaves are ordered side by side, and it comes last.
// METIS draws lots from the one generator of its process and would share it among threads, so that
// a part goes to a process of its own, which hands back the order in memory that both see.
#include "solver/equations/dissect.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>

#include "solver/base/parallel.h"
#include "solver/processes/ranks.h"

static const int worthparting = 20000;  // vertices

namespace {
struct half {
    uppergraph graph;
    std::vector<int> vertex;  // of the whole
};

// Numbers that outlive the process that wrote them.
class sharednumbers {
  public:
    explicit sharednumbers(std::size_t count)
        : bytes(count * sizeof(int)),
          at(mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {}
    ~sharednumbers() {
        if (there()) munmap(at, bytes);
    }
    sharednumbers(const sharednumbers&) = delete;
    sharednumbers& operator=(const sharednumbers&) = delete;
    bool there() const { return at != MAP_FAILED; }
    int* data() const { return static_cast<int*>(at); }

  private:
    std::size_t bytes;
    void* at;
};
}  // namespace

static half takehalf(const uppergraph& whole, const std::vector<int>& side, int wanted) {
    half p;
    p.graph.start.push_back(0);
    std::vector<int> place(side.size(), -1);
    for (int v = 0; v < whole.size(); ++v) {
        if (side[std::size_t(v)] != wanted) continue;
        place[std::size_t(v)] = int(p.vertex.size());
        p.vertex.push_back(v);
        for (int i = whole.start[std::size_t(v)]; i < whole.start[std::size_t(v) + 1]; ++i) {
            const int other = place[std::size_t(whole.row[std::size_t(i)])];
            if (other >= 0) p.graph.row.push_back(other);
        }
        p.graph.start.push_back(int(p.graph.row.size()));
    }
    return p;
}

static std::vector<int> dissect(const uppergraph& graph);

// A process that orders the half and ends; -1 where there is none.
static pid_t startprocess(const half& p, const sharednumbers& order) {
    if (threads() == 1 || !allranks().alone() || !order.there()) return -1;
    const pid_t parent = getpid(), child = fork();
    if (child != 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    bool good = getppid() == parent;
    try {
        const std::vector<int> own = good ? dissect(p.graph) : std::vector<int>();
        good = !own.empty();
        std::copy(own.begin(), own.end(), order.data());
    } catch (...) {
        good = false;
    }
    _exit(good ? 0 : 1);
}

static bool wentwell(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Below some hundred vertices minimum degree within the separators is as good as they are.
static std::vector<int> dissectwhole(const uppergraph& graph) {
    return bycholmod(graph, [&](cholmod_sparse& a, int* order, cholmod_common& c) {
        std::vector<int> parent(std::size_t(graph.size())), part(parent.size());
        c.method[0].nd_small = 300;
        c.method[0].nd_compress = 0;  // each vertex stands for a node already
        c.method[0].nd_camd = 1;
        return cholmod_nested_dissection(&a, nullptr, 0, order, parent.data(), part.data(), &c) >=
               0;
    });
}

std::vector<int> bisect(const uppergraph& graph) {
    return bycholmod(graph, [](cholmod_sparse& a, int* sides, cholmod_common& c) {
        return cholmod_bisect(&a, nullptr, 0, 0, sides, &c) >= 0;
    });
}

double cutworth(double left, double right, double separator) {
    return left > 0 && right > 0 ? separator * (1 / left + 1 / right) : INFINITY;
}

double cutworth(const std::vector<int>& side) {
    const auto count = [&](int wanted) { return double(std::ranges::count(side, wanted)); };
    return cutworth(count(0), count(1), count(2));
}

static std::vector<int> dissect(const uppergraph& graph) {
    return graph.size() <= worthparting ? dissectwhole(graph) : dissect(graph, bisect(graph));
}

std::vector<int> dissect(const uppergraph& graph, const std::vector<int>& side) {
    if (graph.size() <= worthparting) return dissectwhole(graph);
    if (side.empty()) return {};
    const half left = takehalf(graph, side, 0), right = takehalf(graph, side, 1);
    if (left.vertex.empty() || right.vertex.empty()) return dissectwhole(graph);
    const sharednumbers shared(left.vertex.size() + 1);
    const pid_t child = startprocess(left, shared);
    const std::vector<int> second = dissect(right.graph);
    std::vector<int> first;
    if (child > 0 && wentwell(child))
        first.assign(shared.data(), shared.data() + left.vertex.size());
    else
        first = dissect(left.graph);
    if (first.size() < left.vertex.size() || second.size() < right.vertex.size()) return {};
    std::vector<int> order;
    for (const int v : first) order.push_back(left.vertex[std::size_t(v)]);
    for (const int v : second) order.push_back(right.vertex[std::size_t(v)]);
    for (int v = 0; v < graph.size(); ++v)
        if (side[std::size_t(v)] == 2) order.push_back(v);
    return order;
}
