// SPDX-License-Identifier: GPL-3.0-or-later
// Talk between processes. Who waits for one that writes or works alone sleeps between two looks
// instead of spinning on a core that the other could use.
#include "solver/mpi/mpiranks.h"

#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "core/textfile.h"

static const int piece = 1 << 27;  // bytes of one message, or numbers of one sum

static void sleepabit() {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// Waits until a look finds what is awaited: at first there are few moments between two of them.
template <typename Look>
static void await(Look look) {
    const std::chrono::microseconds longest(1000);
    for (std::chrono::microseconds rest(8); !look(); rest = std::min(2 * rest, longest))
        std::this_thread::sleep_for(rest);
}

// Who waits gives way to others: where the machine has more work than cores, a process that spins
// keeps from it the very one that it waits for. The threads that MPI begins leave the signal to
// stop to those of the program.
void beginprocesses(int& count, char**& words) {
    setenv("OMPI_MCA_mpi_yield_when_idle", "1", 0);
    sigset_t stop, former;
    sigemptyset(&stop);
    sigaddset(&stop, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stop, &former);
    MPI_Init(&count, &words);
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

mpiranks::mpiranks() {
    MPI_Comm_rank(MPI_COMM_WORLD, &number);
    MPI_Comm_size(MPI_COMM_WORLD, &all);
    MPI_Comm neighbours;
    MPI_Comm_split_type(MPI_COMM_WORLD, MPI_COMM_TYPE_SHARED, number, MPI_INFO_NULL, &neighbours);
    MPI_Comm_size(neighbours, &onhost);
    MPI_Comm_free(&neighbours);
    MPI_Comm_dup(MPI_COMM_WORLD, &farewell);
    char name[MPI_MAX_PROCESSOR_NAME];
    int length = 0;
    MPI_Get_processor_name(name, &length);
    hostname.assign(name, std::size_t(length));
    home = textoffirst(hostname);
}

// One process has nobody to talk to, and any of its threads may ask.
void mpiranks::sum(double* values, std::int64_t count) {
    if (all == 1) return;
    for (std::int64_t at = 0; at < count; at += piece)
        MPI_Allreduce(MPI_IN_PLACE, values + at, int(std::min<std::int64_t>(piece, count - at)),
                      MPI_DOUBLE, MPI_SUM, MPI_COMM_WORLD);
}

void mpiranks::takefirst(double* values, std::int64_t count) {
    if (all == 1) return;
    for (std::int64_t at = 0; at < count; at += piece)
        MPI_Bcast(values + at, int(std::min<std::int64_t>(piece, count - at)), MPI_DOUBLE, 0,
                  MPI_COMM_WORLD);
}

void mpiranks::most(double* values, std::int64_t count) {
    if (all == 1) return;
    MPI_Allreduce(MPI_IN_PLACE, values, int(count), MPI_DOUBLE, MPI_MAX, MPI_COMM_WORLD);
}

// --- one to another -----------------------------------------------------------------------------

static const int tag = 1;

// The data stay in their place until all messages are done.
static std::vector<MPI_Request> beginsend(const void* data, std::size_t size, int to) {
    const char* const from = static_cast<const char*>(data);
    std::vector<MPI_Request> messages;
    for (std::size_t at = 0, count = piece; count == piece; at += count) {
        count = std::min<std::size_t>(piece, size - at);
        MPI_Isend(from + at, int(count), MPI_CHAR, to, tag, MPI_COMM_WORLD,
                  &messages.emplace_back());
    }
    return messages;
}

static bool aredone(std::vector<MPI_Request>& messages) {
    int done = 0;
    MPI_Testall(int(messages.size()), messages.data(), &done, MPI_STATUSES_IGNORE);
    return done != 0;
}

static void send(const void* data, std::size_t size, int to) {
    std::vector<MPI_Request> messages = beginsend(data, size, to);
    await([&] { return aredone(messages); });
}

// Behind what the list holds.
template <typename List>
static void receive(int from, List& to) {
    const std::size_t one = sizeof(typename List::value_type);
    std::size_t size = to.size() * one;
    for (int count = piece; count == piece; size += std::size_t(count)) {
        MPI_Status status;
        await([&] {
            int found = 0;
            MPI_Iprobe(from, tag, MPI_COMM_WORLD, &found, &status);
            return found != 0;
        });
        MPI_Get_count(&status, MPI_CHAR, &count);
        to.resize((size + std::size_t(count)) / one);
        MPI_Recv(reinterpret_cast<char*>(to.data()) + size, count, MPI_CHAR, from, tag,
                 MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    }
}

std::vector<double> mpiranks::gather(const std::vector<double>& mine) {
    if (number > 0) {
        send(mine.data(), mine.size() * sizeof(double), 0);
        return {};
    }
    std::vector<double> result = mine;
    for (int from = 1; from < all; ++from) receive(from, result);
    return result;
}

std::vector<double> mpiranks::collect(const std::vector<double>& mine) {
    std::vector<double> result(mine.size() * std::size_t(all));
    const int count = int(mine.size());
    MPI_Allgather(mine.data(), count, MPI_DOUBLE, result.data(), count, MPI_DOUBLE, MPI_COMM_WORLD);
    return result;
}

void mpiranks::handin(std::string& mine, const std::function<void(std::string&)>& take) {
    if (number > 0) {
        settle();
        handed.swap(mine);
        underway = beginsend(handed.data(), handed.size(), 0);
        return;
    }
    take(mine);
    for (int from = 1; from < all; ++from) {
        handed.clear();
        receive(from, handed);
        take(handed);
    }
}

void mpiranks::nudge() {
    aredone(underway);
}

void mpiranks::settle() {
    await([&] { return aredone(underway); });
    handed = std::string();  // a checkpoint's was long
}

std::string mpiranks::handout(const std::function<std::string()>& make) {
    if (number > 0) {
        std::string mine;
        receive(0, mine);
        return mine;
    }
    std::string mine = make();
    for (int to = 1; to < all; ++to) {
        const std::string theirs = make();
        send(theirs.data(), theirs.size(), to);
    }
    return mine;
}

// --- all to all ---------------------------------------------------------------------------------

std::vector<std::string> mpiranks::exchange(std::vector<std::string> toeach) {
    std::vector<std::string> got(toeach.size());
    for (int step = 0; step < all; ++step) {
        std::string& given = toeach[std::size_t((number + step) % all)];
        std::string& taken = got[std::size_t((number + all - step) % all)];
        if (step == 0) {
            taken = std::move(given);
            continue;
        }
        auto messages = beginsend(given.data(), given.size(), (number + step) % all);
        receive((number + all - step) % all, taken);
        await([&] { return aredone(messages); });
        given = {};
    }
    return got;
}

std::vector<std::string> mpiranks::texts(const std::string& mine) {
    const int length = int(mine.size());
    std::vector<int> lengths(std::size_t(all), 0), first(std::size_t(all) + 1, 0);
    MPI_Allgather(&length, 1, MPI_INT, lengths.data(), 1, MPI_INT, MPI_COMM_WORLD);
    for (std::size_t r = 0; r < lengths.size(); ++r) first[r + 1] = first[r] + lengths[r];
    std::string together(std::size_t(first.back()), ' ');
    MPI_Allgatherv(mine.data(), length, MPI_CHAR, together.data(), lengths.data(), first.data(),
                   MPI_CHAR, MPI_COMM_WORLD);
    std::vector<std::string> result;
    for (std::size_t r = 0; r < lengths.size(); ++r)
        result.push_back(together.substr(std::size_t(first[r]), std::size_t(lengths[r])));
    return result;
}

std::string mpiranks::anyfault(const std::string& mine) {
    for (const std::string& text : texts(mine))
        if (!text.empty()) return text;
    return {};
}

void mpiranks::checkversions(const std::string& version) {
    const std::vector<std::string> versions = texts(version), hosts = texts(hostname);
    for (std::size_t r = 1; r < versions.size(); ++r)
        if (versions[r] != versions[0])
            refuse("feiflu-mpi is of version " + versions[0] + " on " + hosts[0] + " and " +
                   versions[r] + " on " + hosts[r] + "; install the same on all hosts");
}

void mpiranks::checksame(const std::string& what, const std::string& mine) {
    const std::vector<std::string> all = texts(mine), hosts = texts(hostname);
    for (std::size_t r = 1; r < all.size(); ++r)
        if (all[r] != all[0])
            refuse(what + " is not the same on " + hosts[0] + " and on " + hosts[r] +
                   "; let all hosts work in one folder");
}

void mpiranks::end(const std::string& fault) {
    using namespace std::chrono;
    const auto patience = milliseconds(1500);  // by then whoever meets the same fault has done so
    const auto begin = steady_clock::now();
    MPI_Request request;
    MPI_Ibarrier(farewell, &request);
    for (int done = 0; MPI_Test(&request, &done, MPI_STATUS_IGNORE), done == 0; sleepabit()) {
        if (fault.empty() || steady_clock::now() - begin < patience) continue;
        std::fprintf(stderr, "%s: %s\n", hostname.c_str(), visible(fault).c_str());
        std::fflush(nullptr);
        MPI_Abort(MPI_COMM_WORLD, 1);
    }
}
