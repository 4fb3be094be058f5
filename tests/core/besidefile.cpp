// SPDX-License-Identifier: GPL-3.0-or-later
// Files beside their targets: links, rights, folders that take no file, and what killed writers
// leave.
#include "core/besidefile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "core/runtime.h"
#include "core/textfile.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

static void writeby(const std::string& path, const std::string& text = "new") {
    textout out(path);
    out.raw(text);
    out.commit();
}

TEST(Besidefile, TheTargetsRightsCountAndALinkLeadsToIt) {
    sessionroom room;
    writefile(room.file("real"), "old");
    fs::create_symlink(room.file("real"), room.file("link"));
    fs::permissions(room.file("real"), fs::perms(0640));
    writeby(room.file("link"));
    EXPECT_TRUE(fs::is_symlink(room.file("link")));
    EXPECT_EQ(contentof(room.file("real")), "new");
    EXPECT_EQ(fs::status(room.file("real")).permissions(), fs::perms(0640));
    writefile(room.file("kept"), "old");
    fs::permissions(room.file("kept"), fs::perms(0444));
    EXPECT_THROW(writeby(room.file("kept")), runtimeerror);
    EXPECT_EQ(contentof(room.file("kept")), "old");
}

TEST(Besidefile, IsItsWritersOwnAndNeverALink) {
    sessionroom room;
    const besidefile one(room.file("a")), other(room.file("a"));
    EXPECT_NE(one.path(), other.path());
    EXPECT_FALSE(besidemark(one.path()).empty());
    EXPECT_FALSE(fs::is_symlink(one.path()));
}

// Pieces of any length, past the places where room is reserved and where blocks go straight to the
// disk; a small file takes none.
TEST(Besidefile, ALargeFileIsWholeAndKeepsNoRoomThatItDoesNotFill) {
    sessionroom room;
    for (const std::size_t size : {100000UL, 3000001UL, 6 * diskwriter::block + 1}) {
        std::string content;
        while (content.size() < size) content += char('a' + content.size() % 23);
        besidefile out(room.file("a"));
        for (std::size_t at = 0, n = 1; at < size; at += n, n = n * 7 % 40009)
            out.write(content.data() + at, std::min(n, size - at));
        out.replacetarget();
        EXPECT_TRUE(contentof(room.file("a")) == content) << size;
        struct stat now {};
        ASSERT_EQ(stat(room.file("a").c_str(), &now), 0);
        const std::size_t unit = 512, page = 1 << 16;
        EXPECT_LE(std::size_t(now.st_blocks) * unit, size + page);
    }
}

// As a user without rights, since root may write into any folder.
TEST(Besidefile, AFileInAFolderThatTakesNoneIsWrittenInPlace) {
    if (geteuid() != 0) GTEST_SKIP() << "needs the rights to give up rights";
    sessionroom room;
    const uid_t nobody = 65534;
    writefile(room.file("a"), "a longer old text");
    fs::permissions(room.file("a"), fs::perms(0666));
    fs::permissions(room.folder, fs::perms(0555));
    const std::string longtext(6 * diskwriter::block + 1, 'x');
    for (const std::string& text : {std::string("new"), longtext, std::string("short")}) {
        ASSERT_EQ(seteuid(nobody), 0);
        EXPECT_NO_THROW(writeby(room.file("a"), text));
        EXPECT_THROW(writeby(room.file("b"), text), runtimeerror);
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_TRUE(contentof(room.file("a")) == text) << text.size();
    }
}

TEST(Besidefile, WhatAKilledWriterLeftIsRemovedAndNothingElse) {
    sessionroom room;
    const std::string left = besidename(room.file("m.tek"), "0123abcd");
    const char* const others[] = {"m.tek", "m.tek.new~", "m.tek.0123abcg.new~",
                                  "m.1.tek.0123abcd.new~", "n.tek.0123abcd.new~"};
    writefile(left, "half");
    for (const char* name : others) writefile(room.file(name), "somebody's");
    const besidefile living(room.file("m.tek"));
    removeleftovers(room.folder, [](const std::string& name) { return name == "m.tek"; });
    EXPECT_FALSE(fs::exists(left));
    for (const char* name : others) EXPECT_TRUE(fs::exists(room.file(name))) << name;
    EXPECT_TRUE(fs::exists(living.path())) << "its writer is at work";
}
