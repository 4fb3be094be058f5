// SPDX-License-Identifier: GPL-3.0-or-later
// Choice and first filling of the program's working directory.
#include "core/appdir.h"

#include <cstdlib>
#include <filesystem>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "core/textfile.h"

namespace fs = std::filesystem;

bool iswritable(const std::string& directory) {
    const fs::path folder = directory;
    std::error_code ec;
    if (!fs::is_directory(folder, ec)) return false;
    return guarded([&] { const besidefile probe((folder / "write-test").string()); },
                   [](const runtimeerror&) {});
}

static fs::path userdata() {
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        return fs::path(xdg) / "kalvane";
    const char* home = std::getenv("HOME");
    return fs::path(home && *home ? home : ".") / ".local/share/kalvane";
}

// A copy that can be written, whatever the rights of the original: installed data are read-only.
static void copyfile(const fs::path& source, const fs::path& target) {
    std::error_code ec;
    const auto age = fs::last_write_time(source, ec);
    fs::permissions(target, fs::perms::owner_write, fs::perm_options::add, ec);
    if (!guarded([&] { copywhole(source.string(), target.string()); }, [](const runtimeerror&) {}))
        return;
    fs::permissions(target, fs::perms::owner_write, fs::perm_options::add, ec);
    fs::last_write_time(target, age, ec);
}

void copytree(const std::string& from, const std::string& to) {
    std::error_code ec;
    fs::create_directories(to, ec);
    for (const auto& entry : fs::directory_iterator(from, ec)) {
        const fs::path target = fs::path(to) / entry.path().filename();
        if (entry.is_directory(ec))
            copytree(entry.path().string(), target.string());
        else if (!fs::exists(target, ec) ||
                 fs::last_write_time(target, ec) != fs::last_write_time(entry.path(), ec))
            copyfile(entry.path(), target);
    }
}

static void fillfrom(const fs::path& source, const fs::path& target) {
    static const char* const files[] = {"ELTYP.DAT", "ELDES.DAT", "sections.dat", "decmem.DAT"};
    std::error_code ec;
    for (const char* name : files)
        if (!fs::exists(target / name, ec) && fs::exists(source / name, ec))
            copyfile(source / name, target / name);
}

// The manual and its pictures are nobody's to edit: those of this version take the place of those
// of another.
static void copymanual(const fs::path& source, const fs::path& target) {
    std::error_code ec;
    if (!fs::exists(source / "manual.htm", ec)) return;
    copyfile(source / "manual.htm", target / "manual.htm");
    removeleftovers((target / "manual").string(), [](const std::string&) { return true; });
    copytree((source / "manual").string(), (target / "manual").string());
}

std::string findappdir(const std::string& programdir, const std::string& installeddata) {
    std::error_code ec;
    fs::path folder = programdir;
    if (const char* home = std::getenv("KALVANE_HOME"); home && *home)
        folder = fs::absolute(home);
    else if (!fs::exists(folder / "ELTYP.DAT", ec) || !iswritable(folder.string()))
        folder = userdata();
    fs::create_directories(folder, ec);
    for (const fs::path& source : {fs::path(programdir), fs::path(installeddata)})
        if (source != folder) {
            fillfrom(source, folder);
            copymanual(source, folder);
        }
    return folder.string();
}
