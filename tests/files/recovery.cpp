// SPDX-License-Identifier: GPL-3.0-or-later
// The copy of unsaved work outlives its process.
#include "files/recovery.h"

#include <filesystem>

#include "core/journal.h"
#include "core/kaltext.h"
#include "core/newmodel.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

// As if the process that wrote the copy had been killed.
static std::string killedcopy(const sessionroom& room) {
    const fs::path copies = fs::path(room.folder) / "unsaved", dead = copies / "999999999-1";
    for (const auto& entry : fs::directory_iterator(copies))
        if (entry.path() != dead) fs::rename(entry.path(), dead);
    return (dead / "model.copy").string();
}

static void makemodel() {
    for (int n = 1; n <= 3; ++n) addnode(float(n), 0.1f, 0);
    addelement(6, {1, 2});
    addelement(6, {2, 3});
    rotpo(2) = 0.1;
    nodename(3) = "top, \"corner\"";
    endrelease(1, 2, 5) = 1;
    elemvis(3, 2) = true;
    groupcolor(1) = 0x123456;
    loadnode(0, 0) = 2;
    loadnode(2, 0) = 1;
    loadnode(2, 1) = 3;
    loadval(2, 1) = -7;
    ncon = 1;
    connode(1) = 1;
    commenttext = "first line\r\nsecond";
    kaltext = "kept";
    viewscale(2) = 3;
    modelname = "/models/bridge";
}

TEST(Recovery, AModelComesBackWithAllThatBelongsToIt) {
    sessionroom room;
    makemodel();
    modelsize(sizenodes) = 5000;
    ASSERT_TRUE(writecopy());
    EXPECT_TRUE(findorphans().empty()) << "its process is alive";
    const std::string file = killedcopy(room);
    const std::vector<orphan> found = findorphans();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].name, "/models/bridge");
    EXPECT_EQ(found[0].bytes, fs::file_size(file));
    EXPECT_EQ(found[0].when.size(), std::string("2026-01-01 00:00:00").size());

    modelsize(sizenodes) = 2;  // the settings declare less by now
    ASSERT_TRUE(resetmodel());
    commenttext.clear();
    modelname.clear();
    ASSERT_TRUE(readcopy(found[0]));
    EXPECT_EQ(nnodes() * 100 + nelems() * 10 + nlc(), 322);
    EXPECT_EQ(nodes(0, 3, 1), 0.1f);
    EXPECT_EQ(elems(2, 2), 3);
    EXPECT_EQ(rotpo(2), 0.1);
    EXPECT_EQ(nodename(3), "top, \"corner\"");
    EXPECT_EQ(endrelease(1, 2, 5), 1);
    EXPECT_TRUE(elemvis(3, 2));
    EXPECT_FALSE(elemvis(3, 1));
    EXPECT_EQ(groupcolor(1), 0x123456);
    EXPECT_EQ(loadval(2, 1), -7);
    EXPECT_EQ(connode(ncon), 1);
    EXPECT_EQ(commenttext + kaltext, "first line\r\nsecondkept");
    EXPECT_EQ(viewscale(2), 3);
    EXPECT_EQ(modelname, "/models/bridge");
    EXPECT_TRUE(isunsaved());
    { const step s("nothing"); }
    EXPECT_TRUE(isunsaved());
    droporphan(found[0]);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(findorphans().empty());
}

TEST(Recovery, ACopyThatIsCutShortLeavesTheModelAsItWas) {
    sessionroom room;
    makemodel();
    ASSERT_TRUE(writecopy());
    const std::string file = killedcopy(room), whole = contentof(file);
    const orphan copy = findorphans().at(0);
    modelname = "other";
    nodes(0, 0, 0) = 2;
    for (std::size_t cut = 0; cut < whole.size(); cut += whole.size() / 97 + 1) {
        writefile(file, whole.substr(0, cut));
        room.platform.messages.clear();
        EXPECT_FALSE(readcopy(copy)) << cut;
        EXPECT_TRUE(room.platform.toldpart("can not be read")) << cut;
        EXPECT_EQ(nnodes(), 2);
        EXPECT_EQ(modelname, "other");
        EXPECT_EQ(nodename(3), "top, \"corner\"");
    }
}

TEST(Recovery, WhatIsUnsavedFollowsTheSteps) {
    sessionroom room;
    startjournal();
    EXPECT_FALSE(isunsaved());
    const auto change = [](float x) {
        const step s("change");
        nodes(0, 0, 0) = 1;
        nodes(0, 1, 0) = x;
    };
    change(1);
    EXPECT_TRUE(isunsaved());
    {
        const step s("Save");
        nodes(0, 1, 1) = 5;  // a save may number anew
        notesaved();
    }
    EXPECT_FALSE(isunsaved());
    ASSERT_TRUE(stepback());
    EXPECT_TRUE(isunsaved());
    ASSERT_TRUE(stepforward());
    EXPECT_FALSE(isunsaved());
    change(2);
    ASSERT_TRUE(stepback());
    EXPECT_FALSE(isunsaved());
}
