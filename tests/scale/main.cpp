// SPDX-License-Identifier: GPL-3.0-or-later
// The solver's tests once more: what the own factor has solved in one process is solved again by
// another engine and by all processes of the job, and must come out the same, refusals to the word.
//
//   mpiexec -n 2 test_scale ENGINE TOLERANCE [options of the tests]
//   test_scale --plate TYPE N BASE [CASES]    writes a model of N x N plates to measure with
//   test_scale --plain WORD...                feiflu by the factor of CHOLMOD in place of its own
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <regex>

#include "solver/base/tune.h"
#include "solver/equations/engines.h"
#include "solver/mpi/mpiranks.h"
#include "solver/mpi/multigrid.h"
#include "solver/mpi/mumps.h"
#include "solver/program.h"
#include "tests/scale/ofall.h"
#include "tests/scale/plainfactor.h"
#include "tests/solver/build.h"

namespace {
struct trial {
    std::string engine;
    double tolerance = 0, worst = 0;
    int solved = 0, refused = 0, rounded = 0;
};

double extent(const model& m) {
    double size = 0;
    for (int n = 2; n <= m.nnodes(); ++n)
        size = std::max(size, (m.nodes[std::size_t(n)] - m.nodes[1]).norm());
    return size;
}

// Largest difference of displacements over the largest of all, rotations made lengths by the size
// of the model; and that of omega^2.
double difference(const model& m, const results& a, const results& b) {
    if (a.u.u.size() != b.u.u.size() || a.modes.value.size() != b.modes.value.size()) return 1;
    const double size = extent(m);
    double change = 0, largest = 0;
    for (std::size_t i = 0; i < a.u.u.size(); ++i) {
        const double arm = a.dofs.code[i % std::size_t(a.dofs.pernode)] > 3 ? size : 1;
        change = std::max(change, arm * std::fabs(a.u.u[i] - b.u.u[i]));
        largest = std::max(largest, arm * std::fabs(a.u.u[i]));
    }
    double worst = largest > 0 ? change / largest : 0;
    const double scale = a.modes.value.empty() ? 0 : std::fabs(a.modes.value.back());
    for (std::size_t i = 0; i < a.modes.value.size(); ++i)
        worst = std::max(worst, std::fabs(a.modes.value[i] - b.modes.value[i]) / scale);
    return worst;
}

// The last warnings, as many as those of another run, without their fractions and powers of ten.
std::vector<std::string> wordsof(const runlog& log, const runlog& other) {
    static const std::regex measured("-?[0-9]+\\.[0-9]+(e[-+][0-9]+)?|[0-9]+e[-+][0-9]+");
    std::vector<std::string> words;
    const std::size_t all = log.warnings().size(), wanted = other.warnings().size();
    for (std::size_t i = all - std::min(all, wanted); i < all; ++i)
        words.push_back(std::regex_replace(log.warnings()[i], measured, "#"));
    return words;
}

// What the log of the last run tells of the model, down to its equations. The centre of masses may
// be rounding.
std::string modelof(const runlog& log) {
    static const std::regex centre("  centre [^\r]*");
    const std::string& text = log.text();
    const std::size_t begin = text.rfind("Units:"), end = text.find("\n", text.rfind("half band"));
    return begin < end ? std::regex_replace(text.substr(begin, end - begin), centre, "") : "";
}

// A refusal for lack of accuracy tells its rounding; what counts is the cause that it names: of
// stiffness too far apart rounding makes any motion. What rounding alone holds is a mechanism or
// next to one by rounding.
std::string causeof(const std::string& words) {
    static const std::regex apart("The stiffness of the elements differs");
    static const std::regex motion("Node [0-9]+ can move "), almost("almost |next to ");
    std::smatch found;
    if (!std::regex_search(words, found, apart) && !std::regex_search(words, found, motion))
        return words;
    return std::regex_replace(words.substr(std::size_t(found.position())), almost, "");
}

// While it stands the whole job works on one model.
class shared {
  public:
    shared(ranks& all, const trial& t, const settings& s) {
        setranks(all);
        useengine(t.engine, s);
    }
    ~shared() {
        workalone();
        useengine("cholmod", {});
    }
};
}  // namespace

// What the own factor's result changes by when the moduli change in their last digits: by so much
// it is a matter of rounding.
static const double roundingsworth = 30;  // one such change is a lucky one at times
static double sensitivity(const build& b, int doftype, wanted what, const results& r) {
    model other = b.m;
    const double nextto1 = 1 + 4 * std::numeric_limits<double>::epsilon();
    for (groupdata& g : other.groups) g.field[fieldmodulus] *= nextto1;
    workalone();
    useengine("cholmod", {});
    runlog log;
    log.quiet();
    return difference(b.m, r, solvemodel(other, b.s, doftype, what, log));
}

static void compare(trial& t, ranks& all) {
    build::solved = [&](build& b, int doftype, wanted what, const results& r) {
        const shared job(all, t, b.s);
        runlog log;
        log.quiet();
        model part = b.m;
        results again = solvemodel(part, b.s, doftype, what, log);
        again.u.u = ofall(again);
        // The same warnings of the same nodes; what they measure may be rounding.
        if (all.first()) {
            EXPECT_EQ(wordsof(log, log), wordsof(b.log, log));
            EXPECT_EQ(modelof(log), modelof(b.log));
        }
        const double worst = difference(b.m, r, again);
        if (worst > t.tolerance) {
            EXPECT_LE(worst, roundingsworth * sensitivity(b, doftype, what, r));
            ++t.rounded;
            return;
        }
        t.worst = std::max(t.worst, worst);
        ++t.solved;
    };
    build::refused = [&](build& b, int doftype, wanted what, const std::string& why) {
        const shared job(all, t, b.s);
        runlog log;
        log.quiet();
        std::string again;
        model part = b.m;
        guarded([&] { solvemodel(part, b.s, doftype, what, log); },
                [&](const runtimeerror& e) { again = e.what; });
        // On the brink of what is refused, another rounding may leave a warning of it.
        if (again.empty() && causeof(why) != why)
            EXPECT_NE(log.text().find(causeof(why)), std::string::npos);
        else
            EXPECT_EQ(causeof(again), causeof(why));
        ++t.refused;
    };
}

// A square clamped at its left edge, loaded along the right one across its plane and in it.
static void writeplate(int type, int n, const char* base, int cases) {
    build b;
    const int g = b.plate(2.1e5, 0.3, 5, 7.85e-6);
    const build::grid at =
        b.mesh(type, g, n, n, [](double r, double s) { return vec3(1000 * r, 1000 * s, 0); });
    b.fix(at.left(), clamped);
    b.spread(1, at.right(), 2, 1000);
    if (hasrotations(type)) b.spread(1, at.right(), 3, 10);
    for (int lc = 2; lc <= cases; ++lc) b.load(b.addcase(), at.number(n, lc), 1, lc);
    b.write(base);
}

int main(int count, char** words) {
    tunelibraries(words);
    if (count >= 5 && std::string(words[1]) == "--plate") {
        const int cases = count > 5 ? std::atoi(words[5]) : 1;
        writeplate(std::atoi(words[2]), std::atoi(words[3]), words[4], cases);
        return 0;
    }
    if (count >= 2 && std::string(words[1]) == "--plain") {
        addengine("cholmod", [](const settings&) { return std::make_unique<plainfactor>(); });
        return runprogram({words + 2, words + count});
    }
    beginprocesses(count, words);
    int failed = 1;
    {
        mpiranks all;
        testing::InitGoogleTest(&count, words);
        trial t;
        if (count > 2) t.engine = words[1], t.tolerance = std::strtod(words[2], nullptr);
        addengine("mumps", [](const settings& s) { return std::make_unique<mumps>(s.scratch); });
        addengine("multigrid", [](const settings&) { return std::make_unique<multigrid>(); });
        compare(t, all);
        auto& listeners = testing::UnitTest::GetInstance()->listeners();
        if (!all.first()) delete listeners.Release(listeners.default_result_printer());
        failed = RUN_ALL_TESTS();
        if (all.first())
            std::printf(
                "%s, %d process(es): %d solutions within %.1e of the own factor's, "
                "%d refusals\n",
                t.engine.c_str(), all.count(), t.solved, t.worst, t.refused);
        failed |= t.solved == 0;
    }
    MPI_Finalize();
    return failed;
}
