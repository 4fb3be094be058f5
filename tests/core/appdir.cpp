// SPDX-License-Identifier: GPL-3.0-or-later
// The first filling of the working directory from installed data that nobody may write.
#include "core/appdir.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/recorder.h"

namespace fs = std::filesystem;

static void put(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

// Takes the right to write from everything in a directory, and gives it back at the end, since a
// user without it could not remove the directory.
class readonlytree {
  public:
    explicit readonlytree(const fs::path& top) : folder(top) { change(fs::perm_options::remove); }
    ~readonlytree() { change(fs::perm_options::add); }
    readonlytree(const readonlytree&) = delete;
    readonlytree& operator=(const readonlytree&) = delete;

  private:
    void change(fs::perm_options how) {
        std::error_code ec;
        fs::permissions(folder, fs::perms::owner_write, how, ec);
        for (const auto& entry : fs::recursive_directory_iterator(folder, ec))
            fs::permissions(entry.path(), fs::perms::owner_write, how, ec);
    }
    fs::path folder;
};

static bool mayownerwrite(const fs::path& file) {
    return (fs::status(file).permissions() & fs::perms::owner_write) != fs::perms::none;
}

TEST(Appdir, FillsFromReadOnlyDataWhatCanBeWritten) {
    sessionroom room;
    const fs::path share = room.file("share"), home = room.file("user/kalvane");
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT", "sections.dat", "decmem.DAT", "manual.htm"})
        put(share / name, "first");
    put(share / "manual/window.png", "picture");
    const char* const former = std::getenv("KALVANE_HOME");
    const std::string kept = former ? former : "";
    setenv("KALVANE_HOME", home.c_str(), 1);
    {
        const readonlytree installed(share);
        EXPECT_EQ(findappdir(room.file("bin"), share.string()), home.string());
    }
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT", "sections.dat", "decmem.DAT", "manual.htm",
                             "manual", "manual/window.png"}) {
        ASSERT_TRUE(fs::exists(home / name)) << name;
        EXPECT_TRUE(mayownerwrite(home / name)) << name;
    }
    EXPECT_EQ(contentof((home / "manual/window.png").string()), "picture");

    // The next version, older on the clock than the copy: the user's catalogue stays, the manual
    // does not.
    put(home / "sections.dat", "edited");
    put(share / "sections.dat", "second");
    put(share / "manual.htm", "second");
    put(share / "manual/window.png", "other");
    for (const char* name : {"manual.htm", "manual/window.png"})
        fs::last_write_time(share / name,
                            fs::last_write_time(home / name) - std::chrono::hours(24));
    findappdir(room.file("bin"), share.string());
    if (former)
        setenv("KALVANE_HOME", kept.c_str(), 1);
    else
        unsetenv("KALVANE_HOME");
    EXPECT_EQ(contentof((home / "sections.dat").string()), "edited");
    EXPECT_EQ(contentof((home / "manual.htm").string()), "second");
    EXPECT_EQ(contentof((home / "manual/window.png").string()), "other");
}
