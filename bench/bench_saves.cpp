// SPDX-License-Identifier: GPL-3.0-or-later
// What a save leaves behind when its process is killed, or the disk is full: kills at points of
// time and before system calls all through a save, and saves on a disk with from no room to enough.
// After each, the model is opened and must be whole, of one save; nothing else may lie in the
// folder.
//
// usage: bench_saves [kills] [points of the full disk]
#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/start.h"
#include "files/filop.h"
#include "files/saveset.h"
#include "files/saving.h"

namespace fs = std::filesystem;

namespace {
// Keeps silent, and answers Cancel or No.
class quietplatform : public platform {
  public:
    answers show(const messagebox& box) override {
        ++messages;
        return box.set == buttons::yesno ? answers::no : answers::cancel;
    }
    filechoice askfile(const filebox&) override { return {}; }
    int messages = 0;
};

struct counts {
    int points = 0, former = 0, later = 0, finished = 0;  // saves that stand after it
    int mixed = 0, unopened = 0, leftovers = 0;
};
}  // namespace

static const int rows = 3000;  // of each kind: a save of some hundred kilobytes

// A model that tells in each of its files which save it is.
static void tagmodel(int tag) {
    const float t = float(tag);
    nodes(0, 0, 0) = elems(0, 0) = float(rows);
    for (int i = 1; i <= rows; ++i) {
        nodes(0, i, 0) = t;
        nodes(0, i, 1) = float(i);
        elems(i, 0) = 6;
        elems(i, 1) = float(i);
        elems(i, 2) = float(i % rows + 1);
        egroup(i) = 1;
        rotpo(i) = tag;
        connode(i) = loadnode(1, i) = i;
        condof(i) = loaddof(1, i) = 1;
        conval(i) = loadval(1, i) = t;
        elemload(1, i, 0) = float(i);
        elemload(1, i, 1) = 1;
        elemload(1, i, 2) = t;
    }
    ncon = loadnode(1, 0) = rows;
    elemload(1, 0, 0) = float(rows);
    graphics(0, 0, 0) = graphics(1, 0, 0) = 1;
    graphics(1, 0, 1) = t;
    groups(1, 1) = lcpar(1, 1) = tag;
    lcomb(1, 1) = t;
    patches(0, 0, 0) = 1;
    patches(1, 0, 0) = 0;
    patches(1, 0, 1) = Integer(tag % 30000);
    commenttext = std::to_string(tag);
}

static std::set<int> tagsofmodel() {
    const auto number = [](double value) { return int(value); };
    return {number(nodes(0, rows, 0)), number(rotpo(rows)),           number(graphics(1, 0, 1)),
            number(conval(rows)),      number(loadval(1, rows)),      number(groups(1, 1)),
            number(lcpar(1, 1)),       number(lcomb(1, 1)),           number(elemload(1, rows, 2)),
            int(patches(1, 0, 1)),     std::atoi(commenttext.c_str())};
}

// Opens what stands and adds it to the counts.
static void look(const std::string& base, int former, counts& c) {
    ++c.points;
    c.finished += fs::exists(base + ".commit~");
    if (!openmodel(base)) {
        ++c.unopened;
        return;
    }
    const std::set<int> tags = tagsofmodel();
    if (tags.size() != 1)
        ++c.mixed;
    else
        ++(*tags.begin() == former ? c.former : c.later);
    for (const auto& entry : fs::directory_iterator(fs::path(base).parent_path())) {
        const std::string extension = entry.path().extension();
        const bool own = std::ranges::find(setextensions, extension) != setextensions.end();
        if (entry.path().stem() != fs::path(base).filename() || !own) ++c.leftovers;
    }
}

static void print(const char* name, const counts& c) {
    std::printf(
        "%-34s %4d points: %4d old save, %4d new save (%d with a record), mixed sets %d, "
        "not opened %d, leftover files %d\n",
        name, c.points, c.former, c.later, c.finished, c.mixed, c.unopened, c.leftovers);
    std::fflush(stdout);
}

static void saveas(const std::string& base, int tag) {
    tagmodel(tag);
    modelname = base;
    if (!savemodel()) std::abort();
}

// --- kills --------------------------------------------------------------------------------------

// Starts a process that saves the tag, stopped before it begins where it is traced.
static pid_t forksaver(const std::string& base, int tag, bool traced) {
    const pid_t child = fork();
    if (child != 0) return child;
    if (traced) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
    }
    saveas(base, tag);
    _exit(0);
}

static double secondsofsave(const std::string& base, int tag) {
    const auto begin = std::chrono::steady_clock::now();
    int status = 0;
    waitpid(forksaver(base, tag, false), &status, 0);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Lets the traced process make `calls` stops at system calls, then kills it. Returns the stops
// made.
static int killatcall(pid_t child, int calls) {
    int status = 0, made = 0;
    waitpid(child, &status, 0);
    while (made < calls) {
        if (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) break;
        waitpid(child, &status, 0);
        if (WIFEXITED(status) || WIFSIGNALED(status)) return made;
        ++made;
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return made;
}

static void killsaves(const std::string& base, int kills) {
    std::mt19937 random(7);
    int tag = 1;
    saveas(base, tag);
    const double seconds = secondsofsave(base, ++tag);
    std::uniform_real_distribution<double> moment(0, 1.1 * seconds);
    counts bytime, bycall;
    for (int i = 0; i < kills / 2; ++i) {
        if (!openmodel(base)) break;
        const int former = *tagsofmodel().begin();
        const pid_t child = forksaver(base, ++tag, false);
        std::this_thread::sleep_for(std::chrono::duration<double>(moment(random)));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        look(base, former, bytime);
    }
    print("killed at a point of time", bytime);
    const int all = killatcall(forksaver(base, ++tag, true), 1 << 30);
    for (int i = 0; i < kills - kills / 2; ++i) {
        if (!openmodel(base)) break;
        const int former = *tagsofmodel().begin();
        killatcall(forksaver(base, ++tag, true), i * all / std::max(1, kills - kills / 2) + 1);
        look(base, former, bycall);
    }
    print("killed at a system call", bycall);
    std::printf("a save: %.3f s, %d stops at system calls\n", seconds, all);
}

// --- full disk ----------------------------------------------------------------------------------

static void fillto(const std::string& file, std::uintmax_t left) {
    std::error_code ec;
    fs::remove(file, ec);
    const auto room = fs::space(fs::path(file).parent_path(), ec).available;
    if (room <= left) return;
    std::ofstream(file, std::ios::binary) << std::string(room - left, 'x');
}

static std::uintmax_t sizeofset(const std::string& base) {
    std::uintmax_t size = 0;
    for (const std::string& extension : setextensions) size += fs::file_size(base + extension);
    return size;
}

static void fullsave(const std::string& base, int tag, counts& c) {
    if (!openmodel(base)) return;
    const int former = *tagsofmodel().begin();
    tagmodel(tag);
    savemodel();
    look(base, former, c);
}

static void filldisk(const fs::path& folder, int points) {
    const std::string disk = folder / "disk", base = disk + "/model/m", ballast = disk + "/ballast";
    fs::create_directories(disk);
    if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=4m") != 0) {
        std::printf("full disk: no right to mount one, left out\n");
        return;
    }
    fs::create_directories(disk + "/model");
    int tag = 1;
    saveas(base, tag);
    const std::uintmax_t size = sizeofset(base);
    counts c;
    for (int i = 0; i < points; ++i) {
        fillto(ballast, size * 3 / 2 * std::uintmax_t(i) / std::uintmax_t(points));
        fullsave(base, ++tag, c);
    }
    print("full disk", c);
    umount(disk.c_str());
}

static void limitsize(const std::string& base, int points) {
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlim_t former = limit.rlim_cur;
    int tag = 1;
    saveas(base, tag);
    const std::uintmax_t size = fs::file_size(base + ".tek");
    counts c;
    for (int i = 0; i < points; ++i) {
        limit.rlim_cur = rlim_t(size * 3 / 2 * std::uintmax_t(i) / std::uintmax_t(points));
        setrlimit(RLIMIT_FSIZE, &limit);
        fullsave(base, ++tag, c);
    }
    limit.rlim_cur = former;
    setrlimit(RLIMIT_FSIZE, &limit);
    print("files of limited size", c);
}

int main(int count, char** words) {
    const int kills = count > 1 ? std::atoi(words[1]) : 200;
    const int points = count > 2 ? std::atoi(words[2]) : 50;
    quietplatform platform;
    setplatform(&platform);
    const fs::path folder =
        fs::temp_directory_path() / ("kalvane-saves-" + std::to_string(getpid()));
    fs::create_directories(folder / "home");
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT"})
        fs::copy_file(std::string(KALVANE_SOURCE_DIR "/data/") + name, folder / "home" / name);
    start(folder / "home");
    for (const char* name : {"killed", "limited"}) fs::create_directories(folder / name);
    killsaves(folder / "killed/m", kills);
    filldisk(folder, points);
    limitsize(folder / "limited/m", points);
    fs::current_path("/");
    fs::remove_all(folder);
}
