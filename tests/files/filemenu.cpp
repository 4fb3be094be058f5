// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the File menu, and the work that they must not lose.
#include "files/filemenu.h"

#include <filesystem>
#include <utility>

#include "core/checksum.h"
#include "core/journal.h"
#include "files/filop.h"
#include "tests/files/filledmodel.h"

namespace fs = std::filesystem;

TEST(Filemenu, SaveAsSplitsTheNameAndAsksBeforeReplacing) {
    filledroom room;
    room.platform.filequeue.push_back({true, room.file("m.tek"), 2});
    EXPECT_EQ(menusave(), reply::done);
    EXPECT_EQ(modelname, room.file("m"));
    EXPECT_EQ(room.platform.title, "Kalvane © 4.1: " + room.file("m"));
    const std::string old = contentof(room.file("m.tek"));
    addnode(1, 1, 1);
    room.platform.filequeue.push_back({true, room.file("m.tek"), 2});
    room.platform.answerqueue.push_back(answers::no);
    EXPECT_EQ(menusave(), reply::cancelled);
    EXPECT_EQ(room.platform.messages.back().preset, answers::no);
    EXPECT_EQ(contentof(room.file("m.tek")), old);
    room.platform.filequeue.push_back({true, room.file("n"), 2});
    EXPECT_EQ(menusave(), reply::done) << "a name without extension gets the filter's";
    EXPECT_TRUE(fs::exists(room.file("n.tek")));
    room.platform.filequeue.push_back({true, room.file("ver.1.2"), 2});
    EXPECT_EQ(menusave(), reply::done);
    EXPECT_TRUE(fs::exists(room.file("ver.1.2.tek")));
    EXPECT_EQ(openfile(room.file("ver.1.2.tek")), reply::done);
    EXPECT_EQ(menusave(), reply::cancelled) << "the dialog was left by Cancel";
}

TEST(Filemenu, OpenTakesEitherCaseAndKeepsTheRecentList) {
    filledroom room("m");
    fs::rename(room.file("m.vpl"), room.file("m.VPL"));
    saveas(room.file("M"));  // another model
    ncon = 1;
    saveas(room.file("M"));
    room.platform.filequeue.push_back({true, room.file("m.TEK"), 2});
    EXPECT_EQ(menuopen(), reply::done);
    EXPECT_EQ(ncon, 4) << "a side file of another case is found";
    const std::size_t before = recentfiles().size();
    EXPECT_EQ(askandopen(pathofrecent(before - 1)), reply::done);
    EXPECT_EQ(recentfiles().size(), before);
    EXPECT_EQ(recentfiles().back(), room.file("m"));
    EXPECT_EQ(openfile(room.file("none.tek")), reply::failed);
    EXPECT_EQ(modelname, room.file("m"));
    EXPECT_EQ(openfile(room.file("m")), reply::done) << "a model by its bare name";
    writefile(room.file("notes.md"), "text");
    EXPECT_EQ(openfile(room.file("notes.md")), reply::failed);
    EXPECT_TRUE(room.platform.toldpart("Files of type \".md\" can not be used here"));
}

// Results are of the model that their checksum names, however the views looked at it.
TEST(Filemenu, ResultsOlderThanTheirModelAreKnownAtOpen) {
    filledroom room("a");
    writefile(room.file("a.sum"),
              "\"static\",\"" + modelchecksum(room.file("a")) + "\",1\r\n\"modes\",\"\",0\r\n");
    const auto reopened = [&] {
        saveas(room.file("a"));
        EXPECT_EQ(openfile(room.file("a.tek")), reply::done);
        return isresultstale();
    };
    viewscale(1) *= 2;
    EXPECT_FALSE(reopened());
    nodes(0, 2, 0) += 1;
    EXPECT_TRUE(reopened());
    noteanalysis();
    EXPECT_FALSE(isresultstale());
}

TEST(Filemenu, NewAsksFirstAndNeverLosesWork) {
    filledroom room;
    room.platform.answerqueue.push_back(answers::cancel);
    EXPECT_EQ(menunew(), reply::cancelled);
    EXPECT_EQ(nnodes(), 12);
    room.platform.answerqueue.push_back(answers::yes);  // and the save dialog is left by Cancel
    EXPECT_EQ(menunew(), reply::cancelled);
    EXPECT_EQ(nnodes(), 12);
    room.platform.answerqueue.push_back(answers::no);
    EXPECT_EQ(menunew(), reply::done);
    EXPECT_EQ(nnodes(), 0);
    EXPECT_EQ(room.platform.title, "Kalvane © 4.1: ");
    EXPECT_TRUE(room.platform.told("Save model ?"));
}

// One row a thing that a user changes; each is work that another model would replace.
TEST(Filemenu, OpenAsksForWorkThatWouldBeLost) {
    const std::pair<const char*, void (*)()> changes[] = {
        {"nothing", [] { viewhor(1) = 2; }},
        {"a place", [] { nodes(0, 3, 2) += 1; }},
        {"a node", [] { addnode(9, 9, 9); }},
        {"an element's group", [] { egroup(2) = 2; }},
        {"a rotation", [] { rotpo(1) += 0.5; }},
        {"a graphic element", [] { graphics(1, 1, 1) += 1; }},
        {"a patch", [] { patches(1, 1, 1) = 9; }},
        {"a constraint", [] { conval(1) += 1; }},
        {"a nodal load", [] { loadval(1, 1) += 1; }},
        {"an element load", [] { elemload(1, 1, 2) += 1; }},
        {"a load case", [] { lcname(1) += "x"; }},
        {"a parameter", [] { lcpar(1, 2) += 1; }},
        {"a factor", [] { lcomb(1, 1) += 1; }},
        {"a property", [] { groups(1, 4) += 1; }},
        {"a group's name", [] { groupname(1) += "x"; }},
        {"the comment", [] { commenttext += "x"; }},
    };
    filledroom room("m");
    for (const auto& [what, change] : changes) {
        ASSERT_EQ(openfile(room.file("m.tek")), reply::done);
        change();
        room.platform.messages.clear();
        room.platform.answerqueue = {answers::cancel};
        const bool work = std::string(what) != "nothing";
        EXPECT_EQ(askandopen(pathofrecent(recentfiles().size() - 1)),
                  work ? reply::cancelled : reply::done)
            << what;
        EXPECT_EQ(room.platform.told("Save model ?"), work) << what;
    }
    saveas(room.file("m"));
    room.platform.messages.clear();
    EXPECT_EQ(menuopen(), reply::cancelled) << "the file dialog, which the recorder leaves";
    EXPECT_TRUE(room.platform.messages.empty()) << "saved: nothing to lose";
}

TEST(Filemenu, ImportPastesBehindTheModel) {
    filledroom room("m");
    room.platform.filequeue.push_back({true, room.file("m.tek"), 2});
    EXPECT_EQ(menuimport(), reply::done);
    EXPECT_EQ(elems(6, 3), 15);
    EXPECT_EQ(groupname(4), "Box, \"welded\"*");
    EXPECT_EQ(egroup(5), 4);
    EXPECT_EQ(nodesel(0), 12);
    EXPECT_EQ(ncon, 4) << "conditions do not come along";
    modelsize(sizenodes) = 30;
    openmodel(room.file("m"));
    room.platform.filequeue.assign(2, {true, room.file("m.tek"), 2});
    EXPECT_EQ(menuimport(), reply::done);
    EXPECT_EQ(menuimport(), reply::failed);
    EXPECT_EQ(ngroups(), 4) << "and no groups behind";
    EXPECT_TRUE(
        room.platform.toldpart("Increase number of nodes or elements on Model declaration form. "
                               "Do: [File,modelsize..]\n\nDeclare larger sizes now and go on?"));
    EXPECT_EQ(nnodes(), 24) << "a paste that does not fit leaves the model as it was";
}

TEST(Filemenu, ALogoutAsksForUnsavedWorkAlone) {
    filledroom room;
    notesaved();
    EXPECT_TRUE(logoutprompt());
    EXPECT_TRUE(room.platform.messages.empty());
    noteunsaved();
    const struct {
        answers answer;
        bool chosen, ends;  // a name for the model; the session
    } cases[] = {{answers::cancel, false, false},
                 {answers::no, false, true},
                 {answers::yes, false, false},
                 {answers::yes, true, true}};
    for (const auto& c : cases) {
        room.platform.answerqueue = {c.answer};
        if (c.chosen) room.platform.filequeue.push_back({true, room.file("kept.tek"), 2});
        EXPECT_EQ(logoutprompt(), c.ends);
        EXPECT_FALSE(room.platform.ended) << "the desktop ends it";
    }
    EXPECT_TRUE(fs::exists(room.file("kept.tek")));
}

TEST(Filemenu, ExitSavesOrStays) {
    filledroom room;
    room.platform.answerqueue = {answers::yes};
    EXPECT_FALSE(exitprompt(closemodes::user)) << "the save was cancelled, nothing is lost";
    EXPECT_FALSE(room.platform.ended);
    room.platform.answerqueue = {answers::cancel};
    EXPECT_FALSE(menuexit());
    room.platform.answerqueue = {answers::cancel};
    EXPECT_FALSE(exitprompt(closemodes::user)) << "Esc stays, where No would leave";
    EXPECT_FALSE(room.platform.ended);
    room.platform.answerqueue = {answers::yes};
    room.platform.filequeue.push_back({true, room.file("last.tek"), 2});
    EXPECT_TRUE(exitprompt(closemodes::user));
    EXPECT_TRUE(room.platform.ended);
    EXPECT_TRUE(fs::exists(room.file("last.tek")));
}
