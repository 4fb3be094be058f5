// SPDX-License-Identifier: GPL-3.0-or-later
// Processes that share one analysis. All of them take the same steps, each on its own part of the
// model (ownpart): what is made of single elements it makes of its own alone, and at the borders
// of the parts the shares are summed (sharing).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "solver/base/model.h"
#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/processes/route.h"

// As it stands: the one process of a program that shares nothing.
class ranks {
  public:
    ranks() = default;
    virtual ~ranks() = default;
    ranks(const ranks&) = delete;
    ranks& operator=(const ranks&) = delete;

    virtual int me() const { return 0; }
    virtual int count() const { return 1; }
    virtual int here() const { return 1; }  // of them on this machine
    bool first() const { return me() == 0; }
    bool alone() const { return count() == 1; }

    // Sums numbers over all, or finds the largest of each, everywhere; or takes over those of the
    // first.
    virtual void sum(double* values, std::int64_t count);
    virtual void most(double* values, std::int64_t count);
    virtual void takefirst(double* values, std::int64_t count);
    // The numbers of all one behind the other, on the first; nothing on the others.
    virtual std::vector<double> gather(const std::vector<double>& mine) { return mine; }
    // The same everywhere, of a few numbers, from each as many.
    virtual std::vector<double> collect(const std::vector<double>& mine) { return mine; }
    // The greatest of all such rows, its first numbers counting first.
    std::vector<double> greatest(const std::vector<double>& mine);

    // Has the first take what each has made, in their order, one at a time. The others go on with
    // another string in the place of theirs; settle waits until it is taken, and nudge, now and
    // then on the thread that hands in, keeps it on its way.
    virtual void handin(std::string& mine, const std::function<void(std::string&)>& take) {
        take(mine);
    }
    virtual void nudge() {}
    virtual void settle() {}
    // Gives each what the first makes for it, in their order.
    virtual std::string handout(const std::function<std::string()>& make) { return make(); }

    // What each process gives to each; returns what each gave to this one.
    virtual std::vector<std::string> exchange(std::vector<std::string> toeach) { return toeach; }

    // For items that have numbers from 0.
    virtual std::unique_ptr<route> findroute(const std::vector<int>& given,
                                             const std::vector<int>& taken);
    // The fault of the lowest process that has one; "" where none has.
    virtual std::string anyfault(const std::string& mine) { return mine; }

    std::string textoffirst(const std::string& mine) { return anyfault(first() ? mine : ""); }

    // Refuses where the programs of the processes are not of one version.
    virtual void checkversions(const std::string&) {}
    // Refuses what the hosts do not see alike; what: in words, at the beginning of a sentence.
    virtual void checksame(const std::string&, const std::string&) {}
    // Begins a fault of this machine's: "HOST: ", "" where the first process is here, too.
    virtual std::string there() const { return {}; }
    // Which process works on each element of this one's stretch (deal), slot 0 unused.
    virtual std::vector<std::uint16_t> partition(const model& stretch);
    // The end of the analysis in this process. Whoever fails while others go on ends them all.
    virtual void end(const std::string& fault);
};
// Has all refuse the fault that comes first, where any process has one; place: where it came.
void refusefirst(double place, const std::string& fault);

ranks& allranks();
void setranks(ranks& r);
void workalone();

// Does a step that may fail on one process: all refuse what one refuses.
template <typename Work>
void together(Work work) {
    if (allranks().alone()) return work();
    std::string fault;
    guarded(work, [&](const runtimeerror& e) { fault = e.what; });
    fault = allranks().anyfault(fault);
    if (!fault.empty()) refuse(fault);
}

// The same for a step with the files, the memory or the disc of a machine: a fault names it.
template <typename Work>
void onhosts(Work work) {
    together([&] {
        guarded(work, [](const runtimeerror& e) {
            throw runtimeerror{e.number, allranks().there() + e.what};
        });
    });
}

// Elements of this process, and nodes that it counts where all are counted.
inline bool isown(const model& m, int e) {
    return m.rankof.empty() || m.rankof[std::size_t(e)] == allranks().me();
}
inline bool iscounted(const model& m, int n) {
    return m.counted.empty() || m.counted[std::size_t(n)] != 0;
}

// Has all refuse the fault of the first element, by the numbers of the files, that has one. check
// is called by all threads.
template <typename Check>
void refusefirstof(const model& m, Check check) {
    std::mutex guard;
    int first = 0;
    runtimeerror fault{};
    parallelpieces(m.nelems(), 4096, [&](int begin, int end, int) {
        int e = begin + 1;
        const auto all = [&] {
            for (; e <= end; ++e)
                if (isown(m, e)) check(e);
        };
        guarded(all, [&](const runtimeerror& wrong) {
            const std::lock_guard lock(guard);
            if (first != 0 && first < e) return;
            first = e;
            fault = wrong;
        });
    });
    if (allranks().alone() && first > 0) throw fault;
    refusefirst(first > 0 ? m.nameof(first) : 0, fault.what);
}
