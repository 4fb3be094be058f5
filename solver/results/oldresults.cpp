// SPDX-License-Identifier: GPL-3.0-or-later
// The removal of results, kind by kind.
#include "solver/results/oldresults.h"

#include <algorithm>
#include <filesystem>

#include "core/besidefile.h"
#include "core/resultfiles.h"
#include "solver/base/refuse.h"
#include "solver/results/sumfile.h"

static const char* const staticfiles[] = {".rvp", ".KRT", ".LES", ".MEM",
                                          ".NSA", ".NLA", ".NSR", ".NSL"};
static const char* const modefiles[] = {".EIG"};
static const char* const commonfiles[] = {".EMS", ".DAT"};  // each run writes them anew

void removeresults(const job& j) {
    for (const std::string& path : foreignresults(j.base))
        refuse(path + " is no file of an analysis and would be replaced by one; move it away, or " +
               "give the model another name");
    std::error_code ec;
    const auto remove = [&](const auto& extensions) {
        for (const char* extension : extensions) std::filesystem::remove(j.base + extension, ec);
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
