// SPDX-License-Identifier: GPL-3.0-or-later
// feiflu at work: a clamped plate of shells against ccx on the same mesh and the same two cores,
// its stages beside the plain work in them, how the time grows with the mesh, and what many load
// cases cost over one.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench/plainread.h"
#include "bench/ratio.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "solver/base/blas.h"
#include "solver/base/tune.h"

namespace fs = std::filesystem;

static const double side = 1000, thickness = 10, modulus = 210000, poisson = 0.3, pressure = 0.01;

// --- models -------------------------------------------------------------------------------------

// Files of a model but for its nodes, elements, constraints and loads: one group, plain cases.
static void writerest(const std::string& base, const std::vector<double>& fields, int cases) {
    textout mlt(base + ".mlt"), lcd(base + ".lcd");
    mlt.line(1);
    mlt.quoted("GR 1").endline();
    for (const double value : fields) mlt.line(value);
    for (int i = 0; i < 6; ++i) mlt.line(0, 0, 0, 0, 0, 0);
    lcd.line(cases);
    for (int lc = 1; lc <= cases; ++lc) {
        lcd.quoted("LC " + std::to_string(lc)).endline();
        lcd.line(0);
        for (const int value : {1, 0, 0, 0, 1}) lcd.line(value);
    }
    mlt.commit();
    lcd.commit();
}

// n x n SHELL4, clamped all round, under pressure: even in the first case.
static void writeplate(const std::string& base, int n, int cases = 1) {
    textout tek(base + ".tek"), vpl(base + ".vpl"), ell(base + ".ell");
    const auto number = [n](int i, int j) { return i + j * (n + 1) + 1; };
    tek.line((n + 1) * (n + 1), n * n);
    for (int j = 0; j <= n; ++j)
        for (int i = 0; i <= n; ++i) tek.line(side * i / n, side * j / n, 0);
    const int shell4 = 9;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) {
            tek.line(shell4);
            tek.line(number(i, j), number(i + 1, j), number(i + 1, j + 1), number(i, j + 1), 1);
        }
    vpl.line(6 * 4 * n);
    for (int j = 0; j <= n; ++j)
        for (int i = 0; i <= n; ++i)
            if (i == 0 || j == 0 || i == n || j == n)
                for (int dof = 1; dof <= 6; ++dof) vpl.line(number(i, j), dof, 0);
    for (int lc = 1; lc <= cases; ++lc) {
        ell.line(n * n);
        for (int e = 1; e <= n * n; ++e) ell.line(e, 3, pressure * (1 + e % lc));
    }
    for (textout* out : {&tek, &vpl, &ell}) out->commit();
    writerest(base, {modulus, poisson, 0, thickness, 0, 0, 0, 0, 0, 0, 0, 0}, cases);
}

// The same for ccx.
static void writedeck(const std::string& base, int n) {
    textout out(base + ".inp");
    const auto number = [n](int i, int j) { return i + j * (n + 1) + 1; };
    out.raw("*NODE,NSET=ALL\n");
    for (int j = 0; j <= n; ++j)
        for (int i = 0; i <= n; ++i) out.line(number(i, j), side * i / n, side * j / n, 0);
    out.raw("*ELEMENT,TYPE=S4,ELSET=PLATE\n");
    int e = 0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i)
            out.line(++e, number(i, j), number(i + 1, j), number(i + 1, j + 1), number(i, j + 1));
    out.raw("*NSET,NSET=EDGE\n");
    for (int j = 0; j <= n; ++j)
        for (int i = 0; i <= n; ++i)
            if (i == 0 || j == 0 || i == n || j == n) out.line(number(i, j));
    out.raw("*MATERIAL,NAME=STEEL\n*ELASTIC\n").line(modulus, poisson);
    out.raw("*SHELL SECTION,ELSET=PLATE,MATERIAL=STEEL\n").line(thickness);
    out.raw("*BOUNDARY\nEDGE,1,6\n*STEP\n*STATIC\n*DLOAD\nPLATE,P," + std::to_string(pressure) +
            "\n*NODE FILE\nU,RF\n*EL FILE\nS\n*END STEP\n");
    out.commit();
}

// nx x ny x nz cells of beams, feet clamped, loads that differ from case to case.
static int writeframe(const std::string& base, int nx, int ny, int nz, int cases) {
    textout tek(base + ".tek"), vpl(base + ".vpl"), knk(base + ".knk");
    const auto number = [=](int i, int j, int k) { return i + (j + k * (ny + 1)) * (nx + 1) + 1; };
    const int nodes = (nx + 1) * (ny + 1) * (nz + 1);
    const int beams = nx * (ny + 1) * nz + (nx + 1) * ny * nz + (nx + 1) * (ny + 1) * nz;
    const int beam = 6;
    tek.line(nodes, beams);
    const auto eachnode = [=](auto use) {
        for (int k = 0; k <= nz; ++k)
            for (int j = 0; j <= ny; ++j)
                for (int i = 0; i <= nx; ++i) use(i, j, k);
    };
    eachnode([&](int i, int j, int k) { tek.line(4000 * i, 4000 * j, 3000 * k); });
    eachnode([&](int i, int j, int k) {
        if (k == 0) return;
        const auto put = [&](int other) {
            tek.line(beam);
            tek.line(number(i, j, k), other, 1);
        };
        if (i < nx) put(number(i + 1, j, k));
        if (j < ny) put(number(i, j + 1, k));
        put(number(i, j, k - 1));
    });
    vpl.line(6 * (nx + 1) * (ny + 1));
    for (int n = 1; n <= (nx + 1) * (ny + 1); ++n)
        for (int dof = 1; dof <= 6; ++dof) vpl.line(n, dof, 0);
    for (int lc = 1; lc <= cases; ++lc) {
        const int top = nodes - (nx + 1) * (ny + 1);
        knk.line((nx + 1) * (ny + 1));
        for (int n = top + 1; n <= nodes; ++n) knk.line(n, 1 + (n + lc) % 3, 1000.0 + lc);
    }
    for (textout* out : {&tek, &vpl, &knk}) out->commit();
    writerest(base, {modulus, poisson, 0, 5000, 0, 0, 2e7, 2e5, 1e7, 1e5, 1e6, 1e5}, cases);
    return beams;
}

// --- runs ---------------------------------------------------------------------------------------

struct cost {
    double seconds = 0, mebibytes = 0;
};

// Runs a program quietly on two threads; its wall time and largest memory.
static cost run(const std::vector<std::string>& words, const std::string& folder) {
    cost c;
    rusage usage{};
    c.seconds = secondsof([&] {
        std::fflush(nullptr);  // or the child writes it once more
        const pid_t child = fork();
        if (child == 0) {
            std::vector<char*> list;
            for (const std::string& word : words) list.push_back(const_cast<char*>(word.c_str()));
            list.push_back(nullptr);
            setenv("OMP_NUM_THREADS", "2", 1);
            if (chdir(folder.c_str()) != 0 || !std::freopen("/dev/null", "w", stdout)) _exit(126);
            execvp(list[0], list.data());
            _exit(127);
        }
        int status = 0;
        wait4(child, &status, 0, &usage);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            std::printf("%s ended with status %d\n", words[0].c_str(), status);
    });
    c.mebibytes = double(usage.ru_maxrss) / 1024;
    return c;
}

static cost runfeiflu(const std::string& folder, const std::string& name) {
    const fs::path self = fs::read_symlink("/proc/self/exe");
    return run({(self.parent_path() / "feiflu").string(), "--model", folder + "/" + name,
                "--appdir", folder},
               folder);
}

// --- figures ------------------------------------------------------------------------------------

// Seconds of a stage by the log of a run.
static double stageseconds(const std::string& base, const std::string& stage) {
    std::ifstream log(base + ".log");
    std::string line, name;
    double seconds = 0;
    bool table = false;
    while (std::getline(log, line)) {
        if (line.starts_with("Stage ")) table = true;
        std::istringstream words(line);
        if (table && words >> name && name == stage && words >> seconds) return seconds;
    }
    return NAN;
}

static double factoroperations(const std::string& base) {
    std::ifstream log(base + ".log");
    std::string line, word;
    double entries = 0, operations = 0;
    while (std::getline(log, line)) {
        std::istringstream words(line);
        if (words >> word && word == "Factor:" && words >> entries >> word >> operations)
            return operations;
    }
    return NAN;
}

// Operations a second of dense products, one a thread.
static double denserate(int threads) {
    const int n = 2000;
    const double one = 1, zero = 0, operations = 2.0 * n * n * n;
    const std::vector<double> a(std::size_t(n) * n, 1.5), empty(a.size(), 0);
    std::vector<std::vector<double>> c(std::size_t(threads), empty);
    double best = INFINITY;
    for (int round = 0; round < 3; ++round)
        best = std::min(best, secondsof([&] {
                            std::vector<std::thread> helpers;
                            for (auto& result : c)
                                helpers.emplace_back([&] {
                                    dgemm_("N", "T", &n, &n, &n, &one, a.data(), &n, a.data(), &n,
                                           &zero, result.data(), &n);
                                });
                            for (std::thread& helper : helpers) helper.join();
                        }));
    return operations * threads / best;
}

// Largest difference of two files of numbers, of the largest number.
static double difference(const std::string& first, const std::string& second) {
    std::ifstream a(first), b(second);
    std::string line, other;
    double largest = 0, apart = 0;
    while (std::getline(a, line) && std::getline(b, other)) {
        const char *p = line.c_str(), *q = other.c_str();
        while (*p != 0 && *q != 0) {
            char *pend = nullptr, *qend = nullptr;
            const double x = std::strtod(p, &pend), y = std::strtod(q, &qend);
            largest = std::max(largest, std::fabs(x));
            apart = std::max(apart, std::fabs(x - y));
            p = pend == p ? p + 1 : pend + std::strspn(pend, ",");
            q = qend == q ? q + 1 : qend + std::strspn(qend, ",");
        }
    }
    return apart / largest;
}

static void tell(const std::string& what, double ours, double theirs, double limit) {
    std::printf("%-46s %9.2f against %9.2f  ratio %5.2f  (wanted: at most %.2f)%s\n", what.c_str(),
                ours, theirs, ours / theirs, limit, ours / theirs > limit ? "  ABOVE" : "");
    std::fflush(stdout);
}

// Medians of runs one behind the other: each but the first finds the memory that the one before it
// left. On a virtual machine what has lain idle for a second may have gone back to the host, and
// then its return takes longer than the work in it.
struct wholeandfactor {
    double seconds = 0, factor = 0, mebibytes = 0;
};

static wholeandfactor runinarow(const std::string& folder, const std::string& name) {
    std::vector<double> seconds, factor, mebibytes;
    const int rounds = 5;
    for (int i = 0; i < rounds; ++i) {
        const cost one = runfeiflu(folder, name);
        seconds.push_back(one.seconds);
        mebibytes.push_back(one.mebibytes);
        factor.push_back(stageseconds(folder + "/" + name, "factor"));
    }
    return {median(seconds), median(factor), median(mebibytes)};
}

static void tellstages(const std::string& name, const wholeandfactor& c, double limit) {
    tell(name + ", whole run, factor", c.seconds, c.factor, limit);
}

static void tellrate(const std::string& base, double factor) {
    const double ours = factoroperations(base) / factor * 1e-9;
    const double dense = denserate(2) * 1e-9, wanted = 0.35;
    std::printf("%-46s %9.1f of      %9.1f  ratio %5.2f  (wanted: at least %.2f)%s\n",
                "factor, 1e9 operations a second, dgemm", ours, dense, ours / dense, wanted,
                ours / dense < wanted ? "  BELOW" : "");
}

// By turns, so that both find machine and files alike; not while the system still clears away the
// memory of the run before, which holds up threads that start.
static void tellreading(const std::string& folder, const std::string& name) {
    const std::string base = folder + "/" + name;
    std::vector<double> plain, ours;
    const int turns = 7;
    const std::chrono::milliseconds pause(300);
    for (int i = 0; i < turns; ++i) {
        std::this_thread::sleep_for(pause);
        plain.push_back(secondsof([&] {
            for (const char* extension : {".tek", ".rot", ".vpl", ".knk", ".ell"})
                if (fs::exists(base + extension)) plainread(base + extension);
        }));
        std::this_thread::sleep_for(pause);
        runfeiflu(folder, name);
        ours.push_back(stageseconds(base, "read"));
    }
    const double thousand = 1000;
    tell("reading, from_chars, milliseconds", median(ours) * thousand, median(plain) * thousand, 2);
}

// Two models that differ in their load cases alone, by turns; seconds of the last run of one case.
static double tellcases(const std::string& folder, const std::string& one, const std::string& many,
                        const std::string& name) {
    std::vector<double> ones, manies;
    const int turns = 3;
    for (int i = 0; i < turns; ++i) {
        manies.push_back(runfeiflu(folder, many).seconds);
        ones.push_back(runfeiflu(folder, one).seconds);
    }
    tell(name + ", 20 cases, 1 case", median(manies), median(ones), 1.3);
    return ones.back();
}

static void usethreads(const std::string& folder, int threads) {
    textout ini(folder + "/feiflu.ini");
    ini.raw("threads = " + std::to_string(threads) + "\n");
    ini.commit();
}

static void tellsame(const std::string& folder) {
    const std::string base = folder + "/plate";
    fs::copy_file(base + ".rvp", base + ".two", fs::copy_options::overwrite_existing);
    usethreads(folder, 1);
    const cost alone = runfeiflu(folder, "plate");
    usethreads(folder, 2);
    std::printf("one thread: %.2f s; displacements differ by %.1e (wanted: at most 1e-12)\n",
                alone.seconds, difference(base + ".rvp", base + ".two"));
}

// --- the whole ----------------------------------------------------------------------------------

static void benchplates(const std::string& folder, int n) {
    const std::string name = "plate " + std::to_string(n) + " x " + std::to_string(n);
    writeplate(folder + "/plate", n);
    writedeck(folder + "/deck", n);
    std::vector<double> ratios;
    cost ours, theirs;
    const bool peer = std::system("command -v ccx > /dev/null") == 0;
    for (int i = 0; i < 3 && peer; ++i) {
        ours = runfeiflu(folder, "plate");
        theirs = run({"ccx", "-i", "deck"}, folder);
        ratios.push_back(ours.seconds / theirs.seconds);
    }
    if (peer) {
        tell(name + ", seconds, ccx", theirs.seconds * median(ratios), theirs.seconds, 0.20);
        tell("the same, MiB", ours.mebibytes, theirs.mebibytes, 0.22);
    } else {
        std::printf("ccx is not installed (package calculix-ccx): no comparison with it\n");
    }
    const wholeandfactor small = runinarow(folder, "plate");
    tellstages(name, small, 2.0);
    writeplate(folder + "/cases", n, 20);
    tellcases(folder, "plate", "cases", name);
    tellreading(folder, "plate");
    tellsame(folder);

    writeplate(folder + "/large", 2 * n);
    const wholeandfactor large = runinarow(folder, "large");
    tellstages("twice as fine", large, 1.4);
    tellrate(folder + "/large", large.factor);
    const double growth = std::log(large.seconds / small.seconds) / std::log(4.0), wanted = 1.3;
    std::printf(
        "twice as fine: %.2f s, %.0f MiB, time grows with equations to the power %.2f "
        "(wanted: at most %.2f)%s\n",
        large.seconds, large.mebibytes, growth, wanted, growth > wanted ? "  ABOVE" : "");
}

static void benchframes(const std::string& folder) {
    const std::string name =
        "frame of " + std::to_string(writeframe(folder + "/one", 32, 32, 31, 1)) + " beams";
    writeframe(folder + "/many", 32, 32, 31, 20);
    const double seconds = tellcases(folder, "one", "many", name);
    tellstages(name, {seconds, stageseconds(folder + "/one", "factor")}, 1.4);
}

static const char usage[] =
    "bench_solver: feiflu beside ccx and beside the plain work in it\n"
    "\n"
    "usage: bench_solver [N]\n"
    "       N: shells along a side of the plate, 2 to 1000 (default 200); twice as many at the "
    "end\n"
    "\n"
    "BENCH_KEEP in the environment keeps the models and results in the folder for temporary "
    "files.\n";

// 0: the words are something else.
static int wantedshells(int count, char** words) {
    const int usual = 200, least = 2, most = 1000;
    if (count == 1) return usual;
    double n = 0;
    const bool understood = count == 2 && readnumber(words[1], n) && n == std::floor(n);
    return understood && n >= least && n <= most ? int(n) : 0;
}

int main(int argc, char** argv) {
    const int n = wantedshells(argc, argv);
    if (n == 0) {
        std::fputs(usage, stderr);
        return 2;
    }
    tunelibraries(argv);
    const std::string folder =
        (fs::temp_directory_path() / ("bench-solver-" + std::to_string(getpid()))).string();
    fs::create_directories(folder);
    usethreads(folder, 2);
    benchplates(folder, n);
    benchframes(folder);
    if (std::getenv("BENCH_KEEP") == nullptr) fs::remove_all(folder);
    return 0;
}
