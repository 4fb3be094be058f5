// SPDX-License-Identifier: GPL-3.0-or-later
// A save that was cut: whatever of it stands on disk, the next opening finds one whole save.
#include "files/saveset.h"

#include <filesystem>

#include "files/filop.h"
#include "files/saving.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

static const std::string mark = "0123abcd";

// The text of a whole record of these files.
static std::string recordof(const std::vector<std::string>& extensions) {
    std::string text = "kalvane save 1\n";
    for (const std::string& extension : extensions) text += extension + " " + mark + "\n";
    return text + "whole\n";
}

TEST(Saveset, ACutSaveIsFinishedOrDropped) {
    sessionroom room;
    addnode(1, 0, 0);
    commenttext = "first";
    modelname = room.file("m");
    ASSERT_TRUE(savemodel());
    nodes(0, 1, 0) = 2;
    commenttext = "second";
    modelname = room.file("later");
    ASSERT_TRUE(savemodel());
    const std::string whole = recordof({".tek", ".txt"});
    const struct {
        const char* name;
        std::string record;  // empty: there is none
        bool tekrenamed;
        const char* stands;
    } cases[] = {
        {"killed before the record", "", false, "first"},
        {"killed within it", whole.substr(0, whole.size() - 3), false, "first"},
        {"a record of no sense", "kalvane save 1\n../x 0123abcd\nwhole\n", false, "first"},
        {"killed before the renaming", whole, false, "second"},
        {"killed within it", whole, true, "second"},
    };
    for (const auto& c : cases) {
        modelname = room.file("m");
        nodes(0, 1, 0) = 1;
        commenttext = "first";
        ASSERT_TRUE(savemodel());
        for (const char* extension : {".tek", ".txt"})
            fs::copy_file(room.file("later") + extension,
                          besidename(room.file("m") + extension, mark));
        if (!c.record.empty()) writefile(room.file("m.commit~"), c.record);
        if (c.tekrenamed) fs::rename(besidename(room.file("m.tek"), mark), room.file("m.tek"));
        ASSERT_TRUE(openmodel(room.file("m"))) << c.name;
        EXPECT_EQ(commenttext, c.stands) << c.name;
        EXPECT_EQ(nodes(0, 1, 0), commenttext == "first" ? 1 : 2) << c.name;
        for (const auto& entry : fs::directory_iterator(room.folder))
            EXPECT_NE(entry.path().string().back(), '~') << c.name << " " << entry.path();
    }
}

// The record stays until the folder takes the files, and nobody sees two saves mixed until then.
TEST(Saveset, ASaveThatCanNotBeFinishedIsToldAndOpensNothing) {
    sessionroom room;
    addnode(1, 0, 0);
    modelname = room.file("m");
    ASSERT_TRUE(savemodel());
    writefile(besidename(room.file("m.txt"), mark), "second");
    writefile(room.file("m.commit~"), recordof({".txt"}));
    fs::remove(room.file("m.txt"));
    fs::create_directory(room.file("m.txt"));  // no file can be put in its place
    modelname = "former";
    EXPECT_FALSE(openmodel(room.file("m")));
    EXPECT_TRUE(room.platform.toldpart("was cut short and can not be finished"));
    EXPECT_EQ(modelname, "former");
    fs::remove(room.file("m.txt"));
    EXPECT_TRUE(openmodel(room.file("m")));
    EXPECT_EQ(commenttext, "second");
}

// A sheet, a report or settings whose writer was killed, but nothing that another model's opening
// may still put in its place.
TEST(Saveset, TheFolderOfAModelIsSweptOfFilesUnderOtherNames) {
    sessionroom room;
    addnode(1, 0, 0);
    modelname = room.file("m");
    ASSERT_TRUE(savemodel());
    const char* const files[] = {"page.pdf", "view.png", "n.rpt", "DEFAULTS.DAT", "m.gra", "n.tek"};
    for (const char* name : files) writefile(besidename(room.file(name), mark), "half");
    ASSERT_TRUE(openmodel(room.file("m")));
    for (const char* name : files)
        EXPECT_EQ(fs::exists(besidename(room.file(name), mark)), std::string(name) == "n.tek")
            << name;
}
