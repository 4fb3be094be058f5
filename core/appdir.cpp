// SPDX-License-Identifier: GPL-3.0-or-later
// Choice and first filling of the program's working directory.
#include "core/appdir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

static bool iswritable(const fs::path& folder) {
    std::error_code ec;
    if (!fs::is_directory(folder, ec)) return false;
    const fs::path probe = folder / ".kalvane-write-test~";
    const bool good = std::ofstream(probe).good();
    fs::remove(probe, ec);
    return good;
}

static fs::path userdata() {
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        return fs::path(xdg) / "kalvane";
    const char* home = std::getenv("HOME");
    return fs::path(home && *home ? home : ".") / ".local/share/kalvane";
}

static void fillfrom(const fs::path& source, const fs::path& target) {
    static const char* const files[] = {"ELTYP.DAT", "ELDES.DAT", "sections.dat"};
    std::error_code ec;
    for (const char* name : files)
        if (!fs::exists(target / name, ec) && fs::exists(source / name, ec))
            fs::copy_file(source / name, target / name, ec);
}

// The manual and its pictures are nobody's to edit: newer ones take the place of those of an
// earlier version.
static void copymanual(const fs::path& source, const fs::path& target) {
    std::error_code ec;
    if (!fs::exists(source / "manual.htm", ec)) return;
    fs::copy(source / "manual.htm", target / "manual.htm", fs::copy_options::update_existing, ec);
    fs::copy(source / "manual", target / "manual",
             fs::copy_options::recursive | fs::copy_options::update_existing, ec);
}

std::string findappdir(const std::string& programdir, const std::string& installeddata) {
    std::error_code ec;
    fs::path folder = programdir;
    if (const char* home = std::getenv("KALVANE_HOME"); home && *home)
        folder = fs::absolute(home);
    else if (!fs::exists(folder / "ELTYP.DAT", ec) || !iswritable(folder))
        folder = userdata();
    fs::create_directories(folder, ec);
    for (const fs::path& source : {fs::path(programdir), fs::path(installeddata)})
        if (source != folder) {
            fillfrom(source, folder);
            copymanual(source, folder);
        }
    return folder.string();
}
