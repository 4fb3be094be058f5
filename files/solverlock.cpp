// SPDX-License-Identifier: GPL-3.0-or-later
// The locks of the analysis.
#include "files/solverlock.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "core/session.h"

namespace fs = std::filesystem;

static std::string inappdir(const char* name) {
    return (fs::path(appdir) / name).string();
}

std::string controlfile() {
    return inappdir("EEM.CTR");
}

void removecontrolfile() {
    std::error_code ignored;
    fs::remove(controlfile(), ignored);
}

// --- a solver without window --------------------------------------------------------------------

static bool waitforlock(int file) {
    const auto step = std::chrono::milliseconds(20);
    const int patience = 100;  // steps between a signal and the solver's end
    for (int i = 0; i < patience; ++i) {
        if (lockfile(file)) return true;
        std::this_thread::sleep_for(step);
    }
    return false;
}

static void endleftsolver() {
    const std::string path = inappdir("EEM.PID");
    const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return;
    char text[32] = {};
    const bool stands = read(file, text, sizeof text - 1) > 0;
    const long process = stands ? std::atol(text) : 0;
    bool gone = lockfile(file);
    for (const int signal : {SIGTERM, SIGKILL}) {
        if (gone || process <= 1) break;
        kill(pid_t(process), signal);
        gone = waitforlock(file);
    }
    close(file);
    if (gone) unlink(path.c_str());
}

// --- the window's lock --------------------------------------------------------------------------

// Where there is no room for it the lock stands all the same, with an owner of no name.
static void writeowner(int file, const std::string& model) {
    const std::string text = std::to_string(getpid()) + "\n" + model + "\n";
    if (ftruncate(file, 0) != 0) return;
    [[maybe_unused]] const ssize_t n = pwrite(file, text.data(), text.size(), 0);
}

bool solverlock::acquire(const std::string& model) {
    const std::string path = inappdir("EEM.LCK");
    for (;;) {
        file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
        if (file < 0)
            throw runtimeerror{errpathaccess, "File can not be written: " + path + " (" +
                                                  std::strerror(errno) + ")"};
        if (!lockfile(file)) {
            close(std::exchange(file, -1));
            return false;
        }
        struct stat now {};
        if (fstat(file, &now) == 0 && now.st_nlink > 0) break;
        close(std::exchange(file, -1));  // its former owner has just removed it
    }
    if (lseek(file, 0, SEEK_END) > 0) endleftsolver();  // a killed window has left its lock
    writeowner(file, model);
    return true;
}

solverlock::~solverlock() {
    if (file < 0) return;
    unlink(inappdir("EEM.LCK").c_str());
    close(file);
}

std::string solverlock::owner() {
    std::ifstream in(inappdir("EEM.LCK"));
    std::string process, model;
    std::getline(in, process);
    std::getline(in, model);
    return "process " + process + (model.empty() ? "" : " (" + model + ")");
}

void deletecontrolfile() {
    guarded(
        [] {
            solverlock lock;
            if (lock.acquire("")) removecontrolfile();
        },
        [](const runtimeerror&) {});
}
