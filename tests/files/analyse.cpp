// SPDX-License-Identifier: GPL-3.0-or-later
// The hand-over to the solver: control file, lock, end of a run and what is left of it.
#include "files/analyse.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "core/besidefile.h"
#include "core/colours.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "files/filemenu.h"
#include "files/runlog.h"
#include "files/saving.h"
#include "files/solverlock.h"
#include "tests/files/filledmodel.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

static void placesolver(sessionroom& room) {
    writefile(room.file("feiflu"), "stands for the solver");
}

TEST(Analyse, HandsOverAndReadsBack) {
    sessionroom room;
    placesolver(room);
    fillmodel();
    curlcomb = 2;
    std::string control;
    room.platform.onprocess = [&] {
        control = contentof(controlfile());
        writefile(modelname + ".log", "feiflu 4.1\nResults are complete\n");
        fs::remove(controlfile());
        room.platform.running = true;  // it lingers after its signal
    };
    runanalysis();
    EXPECT_EQ(control, "") << "without a name, the dialog left by Cancel, nothing starts";
    EXPECT_EQ(nnodes(), 12);
    modelname = room.file("m");
    runanalysis();
    EXPECT_FALSE(room.platform.running) << "it gives way to the next run";
    EXPECT_EQ(control, "\"" + room.file("m") + "\"\r\n0,1,3,1,1,1,1,1\r\n");
    EXPECT_EQ(nnodes(), 12) << "the memory was cleared and the model read back";
    EXPECT_EQ(modelsize(sizenodes), 5000);
    EXPECT_EQ(curlcomb, 2);
    EXPECT_EQ(dorenumber, 0);
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Analyse, AMissingFailingOrCrashingSolverIsTold) {
    filledroom room;
    modelname = room.file("m");
    const auto run = [&](const char* told) {
        runanalysis();
        EXPECT_TRUE(room.platform.toldpart(told)) << told;
        EXPECT_FALSE(fs::exists(controlfile()) || menulock) << told;
        EXPECT_EQ(nnodes(), 12) << told;
    };
    run("feiflu was not found");
    placesolver(room);
    room.platform.onprocess = [] {};  // ends and leaves the control file
    run("The solver stopped without finishing the analysis.");
    room.platform.onprocess = [] { fs::remove(controlfile()); };
    room.platform.exitcode = 1;
    run("The analysis ended without results.");
    // The signal alone is not this run's: another program has removed the file, a log is old.
    writefile(room.file("m.log"), "feiflu 4.1\nResults are complete\n");
    room.platform.exitcode = 0;
    room.platform.onprocess = [&] {
        fs::remove(controlfile());
        room.platform.running = true;
    };
    run("before the solver's end");
}

// Stands for the solver of a window that was killed: it holds its lock until it is ended.
static pid_t forkleftsolver(const sessionroom& room) {
    const pid_t child = fork();
    if (child != 0) return child;
    const int file = open(room.file("EEM.PID").c_str(), O_RDWR | O_CREAT, 0644);
    const std::string number = std::to_string(getpid());
    if (lockfile(file) && write(file, number.data(), number.size()) > 0) pause();
    _exit(0);
}

TEST(Analyse, OneWindowAtATimeAndNoSolverStaysBehind) {
    sessionroom room;
    placesolver(room);
    fillmodel();
    modelname = room.file("m");
    const pid_t left = forkleftsolver(room);
    while (contentof(room.file("EEM.PID")).empty()) usleep(1000);
    writefile(room.file("EEM.LCK"), "1\nold\n");
    writefile(controlfile(), "of the killed window");
    deletecontrolfile();
    int status = 0;
    kill(left, SIGKILL);  // it would be too late
    EXPECT_TRUE(waitpid(left, &status, 0) == left && WTERMSIG(status) == SIGTERM)
        << "ended by the next start";
    EXPECT_FALSE(fs::exists(controlfile()) || fs::exists(room.file("EEM.LCK")));
    {
        solverlock other;
        ASSERT_TRUE(other.acquire("/their/bridge"));
        writefile(controlfile(), "theirs");
        room.platform.cancelled = true;  // of the waiting
        runanalysis();
        deletecontrolfile();
        EXPECT_TRUE(room.platform.toldpart("(/their/bridge)"));
        EXPECT_EQ(contentof(controlfile()), "theirs");
    }
    room.platform.cancelled = false;
    room.platform.onprocess = [] { fs::remove(controlfile()); };
    room.platform.messages.clear();
    runanalysis();
    EXPECT_TRUE(room.platform.messages.empty());
}

TEST(Analyse, FilesOfOthersInTheWayAreAskedAbout) {
    sessionroom room;
    placesolver(room);
    fillmodel();
    writefile(room.file("notes.log"), "my day");
    room.platform.filequeue.push_back({true, room.file("notes.tek"), 2});
    EXPECT_EQ(menusave(), reply::cancelled);
    EXPECT_TRUE(room.platform.toldpart("notes.log"));
    saveas(room.file("notes"));
    runanalysis();
    EXPECT_EQ(contentof(room.file("notes.log")), "my day");
    room.platform.onprocess = [] { fs::remove(controlfile()); };
    room.platform.answerqueue = {answers::yes};
    runanalysis();
    EXPECT_FALSE(fs::exists(room.file("notes.log"))) << "the solver has its way";
}

TEST(Analyse, ItsEndIsToldInTheStatusLine) {
    sessionroom room;
    placesolver(room);
    fillmodel();
    modelname = room.file("m");
    room.platform.onprocess = [&] {
        writefile(room.file("m.log"), "Warning: first\r\nA Warning: of none\r\nWarning: x\r\n");
        fs::remove(controlfile());
    };
    resultsummary = [] { return std::string("the results"); };
    runanalysis();
    resultsummary = nullptr;
    EXPECT_TRUE(room.platform.status.starts_with("Analysed in ")) << room.platform.status;
    EXPECT_NE(room.platform.status.find(" s, 2 warnings; the results"), std::string::npos)
        << room.platform.status;
    EXPECT_EQ(solverlog().warnings, 2);
    EXPECT_EQ(solverlog().path, room.file("m.log"));
    room.platform.answerqueue = {answers::no};
    menunew();
    EXPECT_EQ(solverlog().warnings, 0) << "they were of the other model";
}

// Stands for a solver that refuses, with these words.
struct refusingplatform : recorder {
    explicit refusingplatform(std::string w) : words(std::move(w)) {
        exitcode = 1;
        onprocess = [] { fs::remove(controlfile()); };
    }
    std::string processwords() override { return std::exchange(words, {}); }
    std::string words;
};

// A frame drawn in the plane z = 0 that is free to leave it.
TEST(Analyse, AMechanismInThePlaneNamesTheOtherAnalysis) {
    const struct {
        float z;
        bool twod, told;
    } cases[] = {{0, false, true}, {0, true, false}, {1, false, false}};
    for (const auto& c : cases) {
        sessionroom room;
        placesolver(room);
        addnode(0, 0, 0);
        addnode(1, 0, c.z);
        dim2d = c.twod;
        modelname = room.file("m");
        refusingplatform platform("node 2 in DZ: the structure or a part of it is a mechanism.\n");
        runanalysis();
        EXPECT_TRUE(platform.toldpart("ended without results")) << c.z << c.twod;
        EXPECT_EQ(platform.toldpart("2-D analysis"), c.told) << c.z << c.twod;
    }
}

TEST(Analyse, ACancelledRunBringsALargeModelBack) {
    sessionroom room;
    placesolver(room);
    modelsize(sizenodes) = 30000;
    ASSERT_TRUE(resetmodel());
    for (int n = 1; n <= 25000; ++n) addnode(float(n), 0, 0);
    groups(0, 0) = meshgroup = 2;
    addelement(6, {1, 25000});
    nodename(3) = "corner";
    commenttext = "notes";
    groupcolor(1) = 1234;
    curlc = loadnode(0, 0) = 2;
    modelname = room.file("m");
    room.platform.onprocess = [&] { room.platform.running = room.platform.cancelled = true; };
    runanalysis();
    EXPECT_TRUE(room.platform.toldpart("cancelled"));
    EXPECT_FALSE(room.platform.running);
    ASSERT_EQ(nnodes(), 25000) << "the reading back heeds no Cancel";
    EXPECT_EQ(modelname, room.file("m"));
    EXPECT_EQ(nodename(3), "corner") << "what the files do not hold is kept beside them";
    EXPECT_EQ(groupcolor(1), 1234);
    EXPECT_EQ(curlc, 2);
    EXPECT_EQ(meshgroup, 2);
    EXPECT_FALSE(commentvisible) << "a frame that the user has closed stays closed";
    EXPECT_EQ(modelsize(sizenodes), 30000) << "whatever the file of the sizes holds";
}

TEST(Analyse, OptionsFollowEachOther) {
    sessionroom room;
    analysisoptions form = showoptions();
    form.stiffness = false;
    clicksolver(form);
    EXPECT_FALSE(form.renumber || form.renumberenabled);
    form.stiffness = true;
    clicksolver(form);
    EXPECT_TRUE(form.renumberenabled && !form.renumber) << "enabled again, the check stays off";
    form.eigen = true;
    clickeigen(form);
    EXPECT_FALSE(form.solve || form.linestress || form.festress);
    EXPECT_FALSE(form.solveenabled || form.stressenabled);
    form.twod = true;
    storeoptions(form);
    EXPECT_TRUE(doeigen == 1 && dosolve == 0 && dim2d);
}
