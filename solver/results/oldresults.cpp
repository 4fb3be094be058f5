// SPDX-License-Identifier: GPL-3.0-or-later
// The removal of results, kind by kind.
// State: the removed files whose room the disk still keeps.
#include "solver/results/oldresults.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "core/besidefile.h"
#include "core/resultfiles.h"
#include "solver/base/refuse.h"
#include "solver/results/sumfile.h"

static const char* const staticfiles[] = {".rvp", ".KRT", ".LES", ".MEM",
                                          ".NSA", ".NLA", ".NSR", ".NSL"};
static const char* const modefiles[] = {".EIG"};
static const char* const commonfiles[] = {".EMS", ".DAT"};  // each run writes them anew

static std::vector<int> held;

// Their names are gone at once, their room as the last who holds a file lets go.
static void removefiles(const std::vector<std::string>& paths) {
    std::error_code ec;
    for (const std::string& path : paths) {
        const int file = open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
        if (file >= 0) held.push_back(file);
        std::filesystem::remove(path, ec);
    }
}

void giveroomback() {
    if (held.empty()) return;
    const auto letgo = [files = std::exchange(held, {})] { std::ranges::for_each(files, close); };
    sigset_t all, former;  // signals go to those who know what to do
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    try {
        std::thread(letgo).detach();
    } catch (const std::system_error&) {
        letgo();  // the machine gives no more threads
    }
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

void removeresults(const job& j) {
    for (const std::string& path : foreignresults(j.base))
        refuse(path + " is no file of an analysis and would be replaced by one; move it away, or " +
               "give the model another name");
    std::error_code ec;
    const auto remove = [&](const auto& extensions) {
        std::vector<std::string> paths;
        for (const char* extension : extensions) paths.push_back(j.base + extension);
        removefiles(paths);
    };
    const auto any = [&](const auto& extensions) {
        return std::any_of(std::begin(extensions), std::end(extensions), [&](const char* one) {
            return std::filesystem::exists(j.base + one, ec);
        });
    };
    std::filesystem::remove(j.base + ".log", ec);
    const std::filesystem::path model(j.base);
    removeleftovers(model.parent_path().string(), [&](const std::string& target) {
        return std::ranges::any_of(resultextensions, [&](const std::string& extension) {
            return target == model.filename().string() + extension;
        });
    });
    const auto unwritten = [](const runtimeerror&) {};  // the new sums will tell
    if (j.statics()) {
        remove(staticfiles);
        guarded([&] { dropsums(j.base, runkind::statics); }, unwritten);
    }
    if (j.eigen) {
        remove(modefiles);
        guarded([&] { dropsums(j.base, runkind::modes); }, unwritten);
    }
    if (!any(staticfiles) && !any(modefiles)) remove(commonfiles);
}

void removewhenstopped(const job& j) {
    std::vector<std::string> paths;
    for (const char* extension : staticfiles)
        if (j.statics()) paths.push_back(j.base + extension);
    for (const char* extension : modefiles)
        if (j.eigen) paths.push_back(j.base + extension);
    armresults(paths);
}
