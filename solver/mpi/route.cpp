// SPDX-License-Identifier: GPL-3.0-or-later
// Routes among processes. Every item has a home, a process where what is given of it is joined.
#include <numeric>

#include "solver/mpi/mpiranks.h"
#include "solver/processes/joint.h"

namespace {
// Between those who name items and the homes of these.
struct leg {
    std::vector<int> order;         // of the items named here, by home
    std::vector<int> away, athome;  // numbers of items a process: named here, at home here
    std::vector<int> items;         // at home here, by process

    leg(const std::vector<int>& named, int share, int processes)
        : order(named.size()), away(std::size_t(processes), 0), athome(away) {
        for (const int item : named) ++away[std::size_t(item / share)];
        std::vector<int> next = starts(away), sorted(named.size());
        for (std::size_t i = 0; i < named.size(); ++i) {
            const int at = next[std::size_t(named[i] / share)]++;
            order[std::size_t(at)] = int(i);
            sorted[std::size_t(at)] = named[i];
        }
        MPI_Alltoall(away.data(), 1, MPI_INT, athome.data(), 1, MPI_INT, MPI_COMM_WORLD);
        items.resize(std::size_t(std::accumulate(athome.begin(), athome.end(), 0)));
        MPI_Alltoallv(sorted.data(), away.data(), starts(away).data(), MPI_INT, items.data(),
                      athome.data(), starts(athome).data(), MPI_INT, MPI_COMM_WORLD);
    }
    static std::vector<int> starts(const std::vector<int>& counts) {
        std::vector<int> first(counts.size(), 0);
        std::partial_sum(counts.begin(), counts.end() - 1, first.begin() + 1);
        return first;
    }
    void gohome(const double* from, double* to, MPI_Datatype row) const {
        MPI_Alltoallv(from, away.data(), starts(away).data(), row, to, athome.data(),
                      starts(athome).data(), row, MPI_COMM_WORLD);
    }
    void comeback(const double* from, double* to, MPI_Datatype row) const {
        MPI_Alltoallv(from, athome.data(), starts(athome).data(), row, to, away.data(),
                      starts(away).data(), row, MPI_COMM_WORLD);
    }
};

class mpiroute : public route {
  public:
    mpiroute(const std::vector<int>& given, const std::vector<int>& taken, int share, int processes)
        : out(given, share, processes), back(taken, share, processes), home(out.items, back.items) {
        for (leg* const one : {&out, &back}) one->items = {};
    }
    void pass(const double* given, double* taken, int width, join how) const override {
        const auto w = std::size_t(width);
        MPI_Datatype row;
        MPI_Type_contiguous(width, MPI_DOUBLE, &row);
        MPI_Type_commit(&row);
        const auto room = [w](const std::vector<int>& counts) {
            const std::size_t all = std::accumulate(counts.begin(), counts.end(), std::size_t(0));
            return std::vector<double>(all * w);
        };
        std::vector<double> sent = room(out.away), met = room(out.athome);
        for (std::size_t i = 0; i < out.order.size(); ++i)
            std::copy_n(given + std::size_t(out.order[i]) * w, w, sent.data() + i * w);
        out.gohome(sent.data(), met.data(), row);
        std::vector<double> answers = room(back.athome);
        home.pass(met.data(), answers.data(), width, how);
        sent = room(back.away);
        back.comeback(answers.data(), sent.data(), row);
        for (std::size_t i = 0; i < back.order.size(); ++i)
            std::copy_n(sent.data() + i * w, w, taken + std::size_t(back.order[i]) * w);
        MPI_Type_free(&row);
    }

  private:
    leg out, back;
    joint home;
};
}  // namespace

std::unique_ptr<route> mpiranks::findroute(const std::vector<int>& given,
                                           const std::vector<int>& taken) {
    if (all == 1) return ranks::findroute(given, taken);
    int largest = 0;
    for (const std::vector<int>* const list : {&given, &taken})
        for (const int item : *list) largest = std::max(largest, item);
    MPI_Allreduce(MPI_IN_PLACE, &largest, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD);
    return std::make_unique<mpiroute>(given, taken, largest / all + 1, all);
}
