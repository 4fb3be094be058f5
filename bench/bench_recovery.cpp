// SPDX-License-Identifier: GPL-3.0-or-later
// What is lost when a working session is killed: windows in which somebody adds a node every few
// hundredths of a second are killed at any moment; then the copy that each has left is taken. The
// nodes that are not in it must be of the last two seconds, and nothing may lie there afterwards.
//
// usage: bench_recovery [kills]
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "core/journal.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/start.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "files/recovery.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/recovery.h"
#include "ui/startup.h"

namespace fs = std::filesystem;

static double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// --- the session that works ---------------------------------------------------------------------

// A node is told once its step is at its end: its number and the time.
struct told {
    int node;
    double when;
};

static void addone(int out) {
    {
        const step s("Add");
        modelx = nnodes() + 1;
        addnodeat(1);
    }
    const told t{nnodes(), now()};
    if (write(out, &t, sizeof t) != sizeof t) std::abort();
}

static int work(const char* folder, int out, unsigned seed) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    char name[] = "bench_recovery", *words[] = {name, nullptr};
    guardedapplication application(count, words);
    setplatform(&theqtplatform());
    wiremodules();
    if (!start(folder)) return 1;
    notesaved();
    mainwindow window;
    showmainwindow(window, true);
    wirerecovery();
    std::mt19937 random(seed);
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        addone(out);
        timer.start(5 + int(random() % 150));
    });
    timer.start(0);
    return QApplication::exec();
}

// --- the one who kills --------------------------------------------------------------------------

namespace {
class quietplatform : public platform {
  public:
    answers show(const messagebox&) override { return answers::cancel; }
    filechoice askfile(const filebox&) override { return {}; }
};

struct session {
    std::string folder;
    pid_t process = 0;
    int in = -1;
    double end = 0;  // when it is to be killed
};

struct counts {
    int kills = 0, nocopy = 0, unread = 0, wrong = 0, late = 0, leftovers = 0;
    long nodes = 0, lost = 0;
    double longest = 0;  // age of a lost step, seconds
};
}  // namespace

static const double mostlost = 2;  // seconds

static session begin(const fs::path& folder, unsigned seed) {
    fs::create_directories(folder);
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT", "decmem.DAT"})
        fs::copy_file(std::string(KALVANE_SOURCE_DIR "/data/") + name, folder / name,
                      fs::copy_options::overwrite_existing);
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    session s{folder.string(), fork(), ends[0]};
    if (s.process == 0) {
        const std::string out = std::to_string(ends[1]), from = std::to_string(seed);
        execl("/proc/self/exe", "bench_recovery", "work", s.folder.c_str(), out.c_str(),
              from.c_str(), nullptr);
        _exit(1);
    }
    close(ends[1]);
    return s;
}

static std::vector<told> killat(session& s) {
    std::vector<told> list(1);
    if (read(s.in, list.data(), sizeof(told)) != sizeof(told)) std::abort();  // it works
    if (const double left = list[0].when + s.end - now(); left > 0) usleep(useconds_t(left * 1e6));
    s.end = now();
    kill(s.process, SIGKILL);
    waitpid(s.process, nullptr, 0);
    for (told t; read(s.in, &t, sizeof t) == sizeof t;) list.push_back(t);
    close(s.in);
    return list;
}

// The nodes in the copy are those that were added first.
static bool isright() {
    for (int n = 1; n <= nnodes(); ++n)
        if (nodes(0, n, 0) != float(n)) return false;
    return true;
}

static void look(const session& s, const std::vector<told>& list, counts& c) {
    appdir = s.folder;
    ++c.kills;
    c.nodes += long(list.size());
    int kept = 0;
    const std::vector<orphan> copies = findorphans();
    c.nocopy += copies.empty();
    if (!copies.empty()) {
        if (!readcopy(copies[0])) {
            ++c.unread;
        } else {
            c.wrong += !isright() || !isunsaved();
            kept = nnodes();
        }
        for (const orphan& copy : copies) droporphan(copy);
    }
    c.leftovers += !findorphans().empty() || (fs::exists(fs::path(appdir) / "unsaved") &&
                                              !fs::is_empty(fs::path(appdir) / "unsaved"));
    for (const told& t : list) {
        if (t.node <= kept) continue;
        ++c.lost;
        c.longest = std::max(c.longest, s.end - t.when);
        if (t.node == kept + 1 && s.end - t.when > mostlost) ++c.late;
    }
}

int main(int count, char** words) {
    if (count == 5 && std::string(words[1]) == "work")
        return work(words[2], std::atoi(words[3]), unsigned(std::atoi(words[4])));
    const int kills = count > 1 ? std::atoi(words[1]) : 200, atonce = 8;
    const double longest = 6;  // seconds of work
    quietplatform platform;
    setplatform(&platform);
    const fs::path folder =
        fs::temp_directory_path() / ("kalvane-recovery-" + std::to_string(getpid()));
    std::mt19937 random(7);
    counts c;
    for (int done = 0; done < kills; done += atonce) {
        std::vector<session> sessions;
        for (int i = 0; i < std::min(atonce, kills - done); ++i)
            sessions.push_back(begin(folder / std::to_string(i), unsigned(random())));
        for (session& s : sessions) s.end = std::uniform_real_distribution(0.0, longest)(random);
        std::ranges::sort(sessions, {}, &session::end);
        std::vector<std::vector<told>> lists;
        for (session& s : sessions) lists.push_back(killat(s));
        if (done == 0) start(sessions[0].folder);
        for (std::size_t i = 0; i < sessions.size(); ++i) look(sessions[i], lists[i], c);
    }
    std::printf(
        "%d kills, %ld nodes added, %ld lost, the oldest %.2f s old (wanted: at most %.0f s); "
        "killed before the first copy %d, copies not read %d, wrong %d, more lost than wanted %d, "
        "left behind %d\n",
        c.kills, c.nodes, c.lost, c.longest, mostlost, c.nocopy, c.unread, c.wrong, c.late,
        c.leftovers);
    fs::current_path("/");
    fs::remove_all(folder);
}
