// SPDX-License-Identifier: GPL-3.0-or-later
// The control file and its removal.
#include "solver/base/control.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>

#include "core/besidefile.h"
#include "core/textfile.h"
#include "solver/base/refuse.h"

job readcontrol(const std::string& path) {
    textin in(findnocase(path));
    job j;
    j.base = in.quoted();
    if (j.base.empty()) in.fail(errtype, "the model's name is empty");
    bool renumber = false;  // done by the workbench before it saved
    bool* const flags[] = {&j.eigen,     &j.elementmass, nullptr,       &renumber,
                           &j.stiffness, &j.solve,       &j.linestress, &j.platestress};
    for (bool* flag : flags) {
        if (flag)
            *flag = in.whole() != 0;
        else
            j.doftype = in.wholewithin(1, 3, "a doftype");
    }
    return j;
}

// --- removal ------------------------------------------------------------------------------------

// Read inside signal handlers, hence a plain array that is filled before they are armed.
static char removedpath[4096];
static struct stat removedfile;
static char processpath[sizeof removedpath];
static char resultpaths[16][sizeof removedpath];
static std::atomic<std::size_t> resultcount{0};
static DIR* folder = nullptr;
static char folderprefix[256];

// The file that was read and no other: a later run may have written its own by now.
void removecontrol() {
    struct stat now;
    if (processpath[0] != 0) unlink(processpath);
    if (removedpath[0] == 0 || stat(removedpath, &now) != 0) return;
    if (now.st_ino == removedfile.st_ino && now.st_dev == removedfile.st_dev) unlink(removedpath);
}

// The lock lasts as long as the process, whatever ends it.
void holdprocessfile(const std::string& appdir) {
    const std::string path = appdir + "/EEM.PID";
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (file < 0) return;  // a directory that takes no file has no two windows either
    if (!lockfile(file)) refuse("Another analysis is running in " + appdir + ", see " + path);
    if (path.size() < sizeof processpath) std::memcpy(processpath, path.c_str(), path.size() + 1);
    const std::string text = std::to_string(getpid()) + "\n";
    if (ftruncate(file, 0) != 0 || write(file, text.data(), text.size()) < 0) close(file);
}

// What it needs was allocated when the folder was opened.
void clearfolder() {
    if (folder == nullptr) return;
    rewinddir(folder);
    while (const dirent* const file = readdir(folder))
        if (std::strncmp(file->d_name, folderprefix, std::strlen(folderprefix)) == 0)
            unlinkat(dirfd(folder), file->d_name, 0);
}

// Called with the text of the fault when a signal or a stray exception ends the program; writes it
// to standard error. Only what is safe inside a signal handler is done.
static void onfault(const char* words) {
    for (std::size_t i = 0; i < resultcount; ++i) unlink(resultpaths[i]);
    clearfolder();
    removecontrol();
    const char* const texts[] = {"feiflu: ", words, "\n"};
    for (const char* text : texts)
        if (write(STDERR_FILENO, text, std::strlen(text)) < 0) return;
}

static void onsignal(int number) {
    onfault(number == SIGINT || number == SIGTERM || number == SIGHUP
                ? "stopped before the analysis was finished"
                : "internal fault, the analysis was not finished; please report the model");
    _exit(1);
}

void endstopped() {
    onsignal(SIGTERM);
    _exit(1);
}

static void onterminate() {
    onfault("internal fault (exception without handler), the analysis was not finished");
    _exit(1);
}

void endfaulty(const std::string& why) {
    onfault(why.c_str());
    _exit(1);
}

void armfolder(const std::string& path, const std::string& prefix) {
    if (folder != nullptr) closedir(folder);
    folder = nullptr;
    if (prefix.empty() || prefix.size() >= sizeof folderprefix) return;
    std::memcpy(folderprefix, prefix.c_str(), prefix.size() + 1);
    folder = opendir(path.c_str());
}

void armresults(const std::vector<std::string>& paths) {
    resultcount = 0;
    std::size_t count = 0;
    for (const std::string& path : paths)
        if (path.size() < sizeof resultpaths[0] && count < std::size(resultpaths))
            std::memcpy(resultpaths[count++], path.c_str(), path.size() + 1);
    resultcount = count;
}

void armremoval(const std::string& controlpath, removal when) {
    if (controlpath.size() >= sizeof removedpath) refuse("The path is too long: " + controlpath);
    std::memcpy(removedpath, controlpath.c_str(), controlpath.size() + 1);
    stat(removedpath, &removedfile);
    if (when == removal::always) std::atexit(removecontrol);
    std::set_terminate(onterminate);
    // A stack of its own, so that an overflow of the stack is caught too.
    static char stackroom[1 << 16];
    stack_t own{};
    own.ss_sp = stackroom;
    own.ss_size = sizeof stackroom;
    sigaltstack(&own, nullptr);
    struct sigaction action {};
    action.sa_handler = onsignal;
    action.sa_flags = SA_ONSTACK;
    for (const int number :
         {SIGINT, SIGTERM, SIGHUP, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU})
        sigaction(number, &action, nullptr);
    // A reader of the progress who has gone ends nothing, and a file that may not grow is told by
    // who writes it.
    for (const int number : {SIGPIPE, SIGXFSZ}) signal(number, SIG_IGN);
}
