// SPDX-License-Identifier: GPL-3.0-or-later
// The control file and its removal.
#include "solver/control.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>

#include "core/textfile.h"
#include "solver/refuse.h"

static const char* const resultfiles[] = {".rvp", ".KRT", ".EIG", ".LES", ".NSA", ".NLA",
                                          ".NSR", ".NSL", ".EMS", ".DAT", ".log"};

job readcontrol(const std::string& path) {
    textin in(findnocase(path));
    job j;
    j.base = in.quoted();
    if (j.base.empty()) in.fail(errtype, "the model's name is empty");
    bool renumber = false;  // done by the workbench before it saved
    bool* const flags[] = {&j.eigen,     &j.elementmass, nullptr,       &renumber,
                           &j.stiffness, &j.solve,       &j.linestress, &j.platestress};
    for (bool* flag : flags) {
        const long value = in.whole();
        if (flag) {
            *flag = value != 0;
        } else {
            if (value < 1 || value > 3)
                in.fail(errtype,
                        "a doftype from 1 to 3 was expected, found " + std::to_string(value));
            j.doftype = int(value);
        }
    }
    return j;
}

// --- removal ------------------------------------------------------------------------------------

// Read inside signal handlers, hence a plain array that is filled before they are armed.
static char removedpath[4096];

void removecontrol() {
    if (removedpath[0] != 0) unlink(removedpath);
}

void onfault(const char* words) {
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

static void onterminate() {
    onfault("internal fault (exception without handler), the analysis was not finished");
    _exit(1);
}

void armremoval(const std::string& controlpath) {
    if (controlpath.size() >= sizeof removedpath) refuse("The path is too long: " + controlpath);
    std::memcpy(removedpath, controlpath.c_str(), controlpath.size() + 1);
    std::atexit(removecontrol);
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
         {SIGINT, SIGTERM, SIGHUP, SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU, SIGXFSZ})
        sigaction(number, &action, nullptr);
}

void removeresults(const std::string& base) {
    std::error_code ec;
    for (const char* extension : resultfiles) std::filesystem::remove(base + extension, ec);
}
