// SPDX-License-Identifier: GPL-3.0-or-later
// The start of the solver.
#include "files/solverstart.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "core/numtext.h"
#include "core/session.h"
#include "core/trimmed.h"
#include "files/solverini.h"

namespace fs = std::filesystem;

// --- feiflu.ini ---------------------------------------------------------------------------------

solverwish readwish() {
    solverwish wish;
    for (const auto& [key, value] : solverinientries()) {
        double number = 0;
        if (key == "engine") wish.engine = value;
        if (key == "hosts") wish.hosts = value;
        if (key == "processes" && readnumber(value, number) && number >= 0 && number < 65536)
            wish.processes = int(number);
    }
    return wish;
}

void storeengine(const std::string& engine) {
    if (readwish().engine != engine) storesolverini("engine", engine);
}

// --- program ------------------------------------------------------------------------------------

// Path of a program beside this one, empty when there is none.
static std::string findprogram(const std::string& name) {
    std::error_code ec;
    for (const std::string& folder : {appdir, programdir}) {
        const fs::path program = fs::path(folder) / name;
        if (fs::is_regular_file(program, ec)) return program.string();
    }
    return {};
}

static std::string findlauncher() {
    const char* const path = std::getenv("PATH");
    std::string folders = path != nullptr ? path : "";
    std::error_code ec;
    for (folders += ":"; !folders.empty(); folders.erase(0, folders.find(':') + 1)) {
        const fs::path program = fs::path(folders.substr(0, folders.find(':'))) / "mpiexec";
        if (fs::is_regular_file(program, ec)) return program.string();
    }
    return {};
}

std::string missingparallel() {
    if (findprogram("feiflu-mpi").empty()) return "the program feiflu-mpi beside kalvane";
    if (findlauncher().empty()) return "mpiexec of Open MPI";
    return {};
}

solverstart commandof(const solverwish& wish, const std::string& launcher,
                      const std::string& program) {
    const int cores = std::max(1, int(std::thread::hardware_concurrency()));
    solverstart start{launcher, {"-n", numbertext(wish.processes > 0 ? wish.processes : cores)}};
    const auto add = [&](std::initializer_list<std::string> words) {
        start.arguments.insert(start.arguments.end(), words);
    };
    add({"--bind-to", "none"});  // the threads of a process share what the others leave
    if (wish.hosts.empty())
        add({"--oversubscribe"});
    else  // a host that is off, asks for a password or is lost later must not be waited for
        add({"--hostfile", wish.hosts, "--mca", "plm_rsh_args",
             "-o BatchMode=yes -o ConnectTimeout=10", "--mca", "oob_tcp_keepalive_time", "10",
             "--mca", "oob_tcp_keepalive_intvl", "3", "--mca", "oob_tcp_keepalive_probes", "5"});
    if (geteuid() == 0) add({"--allow-run-as-root"});
    add({program, "--appdir", fs::absolute(appdir).string()});
    return start;
}

solverstart findstart() {
    const solverwish wish = readwish();
    const std::string missing = missingparallel();
    const bool shared = wish.engine == "mumps" || wish.engine == "multigrid";
    if (shared && !missing.empty())
        throw runtimeerror{errfilenotfound,
                           "engine = " + wish.engine + " in " + solverinifile() + " needs " +
                               missing +
                               ", which was not found; install it, or choose another engine in "
                               "[Analyse,Options...]"};
    if (shared || (wish.engine == "auto" && missing.empty()))
        return commandof(wish, findlauncher(), findprogram("feiflu-mpi"));
    const std::string program = findprogram("feiflu");
    if (program.empty())
        throw runtimeerror{errfilenotfound, "The solver program feiflu was not found in " + appdir +
                                                "; place it in the same directory as kalvane"};
    return {program, {}};
}

// --- words --------------------------------------------------------------------------------------

// What stands between two texts of a line, "" where one is missing.
static std::string between(const std::string& line, const std::string& before,
                           const std::string& after) {
    const std::size_t at = line.find(before);
    if (at == line.npos) return {};
    const std::size_t begin = at + before.size(), end = line.find(after, begin);
    return end == line.npos ? "" : line.substr(begin, end - begin);
}

static const char* const lostatstart = "unable to reliably start one or more daemons";

// A line of the launcher that tells why there will be no results, in plain words.
static std::string faultof(const std::string& line) {
    const std::string rank = between(line, "noticed that process rank ", " with PID");
    if (!rank.empty())
        return "Process " + rank + " of feiflu-mpi on " + between(line, " on node ", " exited on") +
               " was ended from outside, by " + line.substr(line.find("signal")) +
               " Its machine may have run out of memory. The other processes have ended too.";
    const std::string library = between(line, "error while loading shared libraries: ", ":");
    if (!library.empty())
        return "feiflu-mpi cannot begin: its library " + library +
               " is missing on a host. Install the packages of feiflu-mpi there, or choose another "
               "engine in [Analyse,Options...].";
    static const char* const lostlater = "The connection to a host of the host file is lost.";
    static const char* const missing =
        "feiflu-mpi is missing on a host; it must stand under the same path on all of them.";
    static const struct {
        const char *theirs, *ours;
    } faults[] = {
        {lostatstart,
         "A host of the host file does not answer or has no Open MPI. Try ssh HOST without a "
         "password, and see the key hosts of feiflu.ini."},
        {"daemon has unexpectedly failed", lostlater},
        {"has lost communication with a remote daemon", lostlater},
        {"not enough slots available",
         "The host file has fewer slots than the key processes of feiflu.ini wants."},
        {"unable to open the hostfile",
         "The host file that the key hosts of feiflu.ini names cannot be read."},
        {"as it could not access", missing},
        {"was unable to find the specified executable", missing},
    };
    for (const auto& fault : faults)
        if (line.find(fault.theirs) != line.npos) return fault.ours;
    return {};
}

// Which host a fault is about stands some lines below it.
static std::string hostof(const std::string& line) {
    if (line.starts_with("Node:")) return std::string(trimmed(line.substr(5)));
    return line.starts_with("Remote daemon:") ? between(line + "\n", " on node ", "\n") : "";
}

// Before the launcher gives a host up, ssh has told why. Of faults that the launcher alone knows
// its first sentences serve.
void lastwords::hear(const std::string& said) {
    const std::string line(trimmed(said));
    if (line.empty()) launcherbegins = false;
    if (settled && !named) {
        const std::string host = hostof(line);
        named = !host.empty();
        if (named) words += " The host is " + host + ".";
    }
    if (settled || line.empty()) return;
    const bool rule = line.starts_with("-----");
    launchertalks |= rule;
    if (const std::string fault = faultof(line); !fault.empty()) {
        settled = true;
        const bool byssh = !words.empty() && line.find(lostatstart) != line.npos;
        words = byssh ? words + "\n" + fault : fault;
    } else if (!launchertalks) {
        words = line;
    } else if (rule) {
        launcherbegins = words.empty();
    } else if (launcherbegins) {
        words += (words.empty() ? "" : " ") + line;
    }
}
