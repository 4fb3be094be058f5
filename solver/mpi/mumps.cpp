// SPDX-License-Identifier: GPL-3.0-or-later
// Calls of MUMPS. Its numbered controls carry the names of its users' guide (5.5).
#include "solver/mpi/mumps.h"

#include <dmumps_c.h>
#include <mpi.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <mutex>
#include <numeric>
#include <thread>

#include "solver/base/control.h"
#include "solver/base/enginetexts.h"
#include "solver/base/memory.h"
#include "solver/dofs/ownpart.h"
#include "solver/equations/order.h"
#include "solver/equations/softness.h"
#include "solver/processes/ranks.h"

static const double million = 1e6;

namespace {
enum job { begin = -1, end = -2, analysis = 1, factorisation = 2, solution = 3 };
enum kind { definite = 1, general = 2 };
const int nodisc = -90;  // its fault

// A disc that is full ends the thread of MUMPS that writes, unheard, and the factorisation would
// wait for it for ever. While this stands the program ends when the disc has next to nothing left.
class discwatch {
  public:
    // folder: "" where there is nothing to watch
    explicit discwatch(const std::string& folder) {
        if (folder.empty()) return;
        try {
            thread = std::jthread([folder](const std::stop_token& stop) { look(folder, stop); });
        } catch (const std::system_error&) {
            // The machine gives no more threads; a disc with room is what it was found to be.
        }
    }

  private:
    static void look(const std::string& folder, const std::stop_token& stop) {
        const auto pause = std::chrono::milliseconds(200);
        const std::uintmax_t least = 1 << 20;
        std::mutex guard;
        std::unique_lock<std::mutex> lock(guard);
        for (std::condition_variable_any bell; !stop.stop_requested();
             bell.wait_for(lock, stop, pause, [] { return false; })) {
            std::error_code ec;
            const auto room = std::filesystem::space(folder, ec);
            if (!ec && room.available < least)
                endfaulty(allranks().there() + mumpsfault(nodisc, 0, folder));
        }
    }

    std::jthread thread;
};

// One matrix in the hands of MUMPS.
class instance {
  public:
    instance(kind symmetry, const std::string& scratch) : folder(scratch) {
        id.comm_fortran = MUMPS_INT(MPI_Comm_c2f(MPI_COMM_WORLD));
        id.par = 1;  // the first process works as well
        id.sym = symmetry;
        call(begin);
        for (int i = 1; i <= 4; ++i) icntl(i) = i < 4 ? -1 : 0;  // no words
        icntl(14) = 40;                          // per cent of work space more than estimated
        icntl(18) = 3;                           // entries come from all processes
        icntl(28) = 1;                           // one process orders
        if (symmetry == general) icntl(13) = 1;  // the last front too tells its negative pivots
    }
    // Others take part in the end, which a fault of this process alone must not wait for.
    ~instance() {
        if (!ended && std::uncaught_exceptions() == 0) call(end);
        if (icntl(22) != 1) return;
        clearfolder();
        armfolder("", "");
    }
    instance(const instance&) = delete;
    instance& operator=(const instance&) = delete;

    // Both outlive the analysis.
    void takeorder(std::vector<int>& blocks, std::vector<int>& turn) {
        icntl(7) = 1;   // the order is given, on the first process
        icntl(15) = 1;  // unknowns come in blocks
        if (!allranks().first()) return;
        id.nblk = MUMPS_INT(blocks.size()) - 1;
        id.blkptr = blocks.data();
        id.perm_in = turn.data();
    }

    // all: unknowns of all processes.
    void analyse(const sparsematrix& a, std::int64_t all) {
        rows.clear();
        columns.clear();
        rows.reserve(a.row.size());
        columns.reserve(a.row.size());
        for (std::int64_t j = 0; j < a.size(); ++j)
            for (auto i = std::size_t(a.start[std::size_t(j)]);
                 i < std::size_t(a.start[std::size_t(j) + 1]); ++i) {
                rows.push_back(MUMPS_INT(a.unknowns->numberof(std::size_t(a.row[i])) + 1));
                columns.push_back(MUMPS_INT(a.unknowns->numberof(std::size_t(j)) + 1));
            }
        id.n = MUMPS_INT(all);
        unknowns = a.unknowns;
        id.nnz_loc = std::int64_t(rows.size());
        id.irn_loc = rows.data();
        id.jcn_loc = columns.data();
        call(analysis);
        refusefault();
    }

    // Leaves the memory for the disc.
    void gotodisc() {
        icntl(22) = 1;
        prefix = allranks().textoffirst("feiflu" + std::to_string(getpid()) + "-");
        settext(folder, id.ooc_tmpdir);
        settext(prefix, id.ooc_prefix);
        armfolder(folder, prefix);
        MPI_Comm neighbours;
        int number = 0, me = 0;
        MPI_Comm_rank(MPI_COMM_WORLD, &number);
        MPI_Comm_split_type(MPI_COMM_WORLD, MPI_COMM_TYPE_SHARED, number, MPI_INFO_NULL,
                            &neighbours);
        MPI_Comm_rank(neighbours, &me);
        MPI_Comm_free(&neighbours);
        watched = me == 0 ? folder : "";
    }

    // False where a pivot is not above 0.
    bool factorise(const sparsematrix& a) {
        found.clear();
        id.a_loc = const_cast<double*>(a.value.data());
        const int tooshort[] = {-8, -9, -14, -15, -17, -20};  // of work space
        const int most = 2000;                                // per cent
        const discwatch watch(watched);
        for (call(factorisation); std::count(std::begin(tooshort), std::end(tooshort), fault()) > 0;
             call(factorisation)) {
            if (icntl(14) > most) break;
            icntl(14) *= 2;
        }
        const int singular = -10, indefinite = -40;
        if (fault() == singular || fault() == indefinite) return false;
        refusefault();
        return true;
    }

    void solve(double* x, int count) {
        id.nrhs = count;
        if (!unknowns->alone())
            return solveshared(x, unknowns->numbers().size(), std::size_t(count));
        id.rhs = x;
        id.lrhs = id.n;
        call(solution);
        refusefault();
    }

    double estimate() const { return million * infog(icntl(22) == 1 ? 26 : 16); }
    double entries() const { return infog(20) < 0 ? -million * infog(20) : infog(20); }
    double operations() const { return id.rinfog[0]; }
    int negatives() const { return infog(12); }

  private:
    // Everyone hands in the right sides that it counts; the solution comes out where its pivots
    // are.
    void solveshared(double* x, std::size_t n, std::size_t count) {
        icntl(20) = 10;
        icntl(21) = 1;
        std::vector<std::size_t> counted;
        for (std::size_t i = 0; i < n; ++i)
            if (unknowns->counts(i)) counted.push_back(i);
        std::vector<MUMPS_INT> names;
        for (const std::size_t i : counted) names.push_back(unknowns->numberof(i) + 1);
        std::vector<double> right(std::max<std::size_t>(counted.size(), 1) * count);
        for (std::size_t c = 0; c < count; ++c)
            for (std::size_t i = 0; i < counted.size(); ++i)
                right[c * counted.size() + i] = x[c * n + counted[i]];
        id.nloc_rhs = MUMPS_INT(counted.size());
        id.lrhs_loc = MUMPS_INT(std::max<std::size_t>(counted.size(), 1));
        id.irhs_loc = names.data();
        id.rhs_loc = right.data();
        const auto pivots = std::size_t(id.info[22]);
        std::vector<double> left(std::max<std::size_t>(pivots, 1) * count);
        std::vector<MUMPS_INT> places(std::max<std::size_t>(pivots, 1));
        id.lsol_loc = MUMPS_INT(places.size());
        id.sol_loc = left.data();
        id.isol_loc = places.data();
        call(solution);
        refusefault();
        places.resize(pivots);
        for (MUMPS_INT& place : places) --place;
        double changed = !way || places != found;
        allranks().most(&changed, 1);
        if (changed != 0) way = allranks().findroute(places, unknowns->numbers());
        found = std::move(places);
        for (std::size_t c = 0; c < count; ++c)
            way->pass(left.data() + c * std::size_t(id.lsol_loc), x + c * n, 1, route::join::sum);
    }
    // What stands there at first is longer.
    template <std::size_t size>
    static void settext(const std::string& text, char (&to)[size]) {
        std::fill_n(to, size, char(0));
        text.copy(to, size - 1);
    }
    void call(job what) {
        id.job = what;
        dmumps_c(&id);
    }
    int& icntl(int i) { return id.icntl[i - 1]; }
    int icntl(int i) const { return id.icntl[i - 1]; }
    int infog(int i) const { return id.infog[i - 1]; }
    int fault() const { return infog(1); }  // of the process that has one, everywhere
    void refusefault() {
        if (fault() >= 0) return;
        const bool mine = id.info[0] == fault();
        const std::string words = mumpsfault(fault(), infog(2), folder);
        call(end);
        ended = true;
        onhosts([&] {
            if (mine) refuse(words);
        });
    }

    DMUMPS_STRUC_C id{};
    bool ended = false;
    std::string folder, watched;  // on disc, by the first process of a machine
    std::string prefix;           // of the files there, of all processes
    std::vector<MUMPS_INT> rows, columns;
    sharingptr unknowns;
    std::vector<MUMPS_INT> found;  // where pivots of the solution are, from 0
    std::unique_ptr<route> way;    // from there to who holds the unknown
};
}  // namespace

struct mumps::inside {
    std::unique_ptr<instance> one;
};

mumps::mumps(const std::string& scratch) : in(new inside), folder(scratch) {}

mumps::~mumps() = default;

// The order of the owners is that of the own factor: libraries come with a MUMPS that has none of
// METIS or SCOTCH inside.
void mumps::describe(const model& m, const dofmap& d) {
    order = {};
    unknowns = d.unknownsofall;
    nodegraph graph;
    if (!allranks().alone()) {
        graph = gathergraph(m, d, order.blocks);
    } else {
        order.blocks.assign(d.firstunknown.begin(), d.firstunknown.end());
        order.blocks.push_back(d.unknowns);
    }
    together([&] {
        if (!allranks().first()) return;
        order.turn.resize(std::size_t(unknowns));
        std::iota(order.turn.begin(), order.turn.end(), 1);
        if (allranks().alone()) return;  // the unknowns have that order
        std::string told;
        int turn = 0;
        for (const int place : ordernodes(graph, told))
            for (int u = order.blocks[std::size_t(place)]; u < order.blocks[std::size_t(place) + 1];
                 ++u)
                order.turn[std::size_t(u)] = ++turn;
    });
    for (int& first : order.blocks) ++first;
}

// The process with the least room decides for all.
void mumps::analyse(const sparsematrix& a) {
    in->one.reset();
    in->one = std::make_unique<instance>(definite, folder);
    in->one->takeorder(order.blocks, order.turn);
    in->one->analyse(a, unknowns);
    const double part = 0.9;  // of the memory; the rest is for loads and results
    double toolarge = in->one->estimate() > part * freememory() / allranks().here();
    allranks().sum(&toolarge, 1);
    if (toolarge == 0 || folder.empty()) return;
    onhosts([&] {
        const double need = entries() * sizeof(double) * allranks().here() / allranks().count();
        std::error_code ec;
        const auto room = std::filesystem::space(folder, ec);
        if (!ec && double(room.available) < need) refuse(mumpsfault(nodisc, 0, folder));
    });
    in->one->gotodisc();
}

double mumps::entries() const {
    return in->one->entries();
}

double mumps::operations() const {
    return in->one->operations();
}

double mumps::bytes() const {
    return in->one->estimate();
}

bool mumps::factorise(const sparsematrix& a) {
    return in->one->factorise(a);
}

double mumps::smallestpivot(const sparsematrix& a, std::int64_t& unknown) {
    const double rounding = 1e-12, soft = softness(*this, a, unknown);
    return soft < rounding ? soft : 1;
}

void mumps::solve(double* x, int columns, triangles) {
    in->one->solve(x, columns);
}

std::int64_t mumps::countnegative(const sparsematrix& a, double mostoperations) {
    instance other(general, folder);
    other.takeorder(order.blocks, order.turn);
    other.analyse(a, unknowns);
    if (other.operations() > mostoperations || !other.factorise(a)) return -1;
    return other.negatives();
}
