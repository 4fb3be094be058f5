// SPDX-License-Identifier: GPL-3.0-or-later
// The command line that starts the solver, and what is made of its launcher's words.
#include "files/solverstart.h"

#include <cstdlib>
#include <filesystem>

#include "files/analyse.h"
#include "files/solverlock.h"
#include "tests/files/filledmodel.h"
#include "tests/support/recorder.h"

namespace fs = std::filesystem;

// Stands for both programs and the launcher; keeps what is started.
struct startplatform : recorder {
    void startprocess(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string&) override {
        started = program;
        for (const std::string& a : arguments) started += " " + a;
        fs::remove(controlfile());
    }
    std::string started;
};

// In a room where only the programs of this list stand.
static std::string startedwith(const std::string& ini, const std::vector<std::string>& programs,
                               std::string& told) {
    sessionroom room;
    startplatform platform;
    fillmodel();
    modelname = room.file("m");
    for (const std::string& name : programs) writefile(room.file(name), "a program");
    if (!ini.empty()) writefile(room.file("feiflu.ini"), ini);
    const char* const former = std::getenv("PATH");
    const std::string path = former != nullptr ? former : "";
    setenv("PATH", ("/nowhere:" + room.folder).c_str(), 1);
    runanalysis();
    setenv("PATH", path.c_str(), 1);
    told = platform.messages.empty() ? "" : platform.messages.back().text;
    std::string started = platform.started;
    const std::string folder = room.folder + "/";
    for (std::size_t at; (at = started.find(folder)) != started.npos;)
        started.erase(at, folder.size());
    return started;
}

TEST(Solverstart, IniAndProgramsDecide) {
    const std::vector<std::string> all = {"feiflu", "feiflu-mpi", "mpiexec"};
    const struct {
        const char *name, *ini;
        std::vector<std::string> programs;
        const char *start, *words, *told;
    } cases[] = {
        {"nothing said", "", all, "feiflu", "feiflu", ""},
        {"one process", "engine = cholmod # fast\n", all, "feiflu", "feiflu", ""},
        {"many", "ENGINE=x\nengine = mumps\nprocesses = 3\n", all, "mpiexec -n 3 ",
         " --oversubscribe", ""},
        {"hosts", "engine = mumps\nhosts = my hosts\n", all, "mpiexec -n ",
         " --hostfile my hosts --mca plm_rsh_args -o BatchMode=yes -o ConnectTimeout=10", ""},
        {"auto", "engine = auto\n", all, "mpiexec -n ", "feiflu-mpi --appdir", ""},
        {"auto alone", "engine = auto\n", {"feiflu"}, "feiflu", "feiflu", ""},
        {"no solver", "engine = mumps\n", {"feiflu"}, "", "", "needs the program feiflu-mpi"},
        {"no launcher", "engine = mumps\n", {"feiflu", "feiflu-mpi"}, "", "", "needs mpiexec of"},
        // The solver names the line of a wrong value.
        {"wrong", "engine = fast\nprocesses = many\n", all, "feiflu", "feiflu", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string told;
        const std::string started = startedwith(c.ini, c.programs, told);
        EXPECT_TRUE(started.starts_with(c.start)) << started;
        EXPECT_NE(started.find(c.words), started.npos) << started;
        EXPECT_EQ(started.empty(), *c.start == 0) << started;
        EXPECT_NE(told.find(c.told), told.npos) << told;
    }
}

TEST(Solverstart, TheEngineIsKeptInItsPlace) {
    sessionroom room;
    const std::string ini = room.file("feiflu.ini");
    analysisoptions form = showoptions();
    EXPECT_EQ(form.engine, "cholmod");
    EXPECT_NE(form.missing, "");
    storeoptions(form);
    EXPECT_FALSE(fs::exists(ini)) << "nothing has changed";
    form.engine = "auto";
    storeoptions(form);
    EXPECT_EQ(contentof(ini), "engine = auto\r\n");
    writefile(ini, "# mine\r\nlength = 1\n engine=auto ; why\r\n\r\nmodes = 3");
    form.engine = "mumps";
    storeoptions(form);
    EXPECT_EQ(contentof(ini), "# mine\r\nlength = 1\r\nengine = mumps  ; why\r\n\r\nmodes = 3\r\n");
    EXPECT_EQ(showoptions().engine, "mumps");
}

TEST(Solverstart, TheLaunchersTalkIsPutPlainly) {
    const struct {
        const char* name;
        std::vector<std::string> lines;
        const char* words;
    } cases[] = {
        {"the solver's own",
         {"Node 1 can move freely", "", "-----", "Primary job  terminated"},
         "Node 1 can move freely"},
        {"a process was killed",
         {"feiflu: stopped before the analysis was finished", "-----",
          "mpiexec noticed that process rank 1 with PID 77 on node vm2 exited on signal 9 "
          "(Killed).",
          "-----", "something else"},
         "Process 1 of feiflu-mpi on vm2 was ended from outside, by signal 9 (Killed)."},
        {"a host is off",
         {"ssh: connect to host far port 22: No route to host", "-----",
          "ORTE was unable to reliably start one or more daemons.", "This usually is caused by:"},
         "ssh: connect to host far port 22: No route to host\nA host of the host file does not"},
        {"a fault of the launcher's own",
         {"-----", "A hostfile was provided that tells the slots of a", "node twice:", "",
          "Node: vm2", "-----"},
         "A hostfile was provided that tells the slots of a node twice:"},
        {"a library is gone",
         {"feiflu-mpi: error while loading shared libraries: libdmumps-5.5.so: cannot open shared "
          "object file: No such file or directory",
          "-----", "Primary job  terminated normally, but 1 process returned"},
         "its library libdmumps-5.5.so is missing on a host"},
        {"a host is lost",
         {"-----", "ORTE has lost communication with a remote daemon.", "",
          "  HNP daemon   : [[13152,0],0] on node vm",
          "  Remote daemon: [[13152,0],1] on node vm2"},
         "connection to a host of the host file is lost. The host is vm2."},
        {"no program there",
         {"-----", "mpiexec was unable to launch the specified application as it could not access",
          "or execute an executable:", "", "Executable: /x/feiflu-mpi", "Node: vm2"},
         "missing on a host; it must stand under the same path on all of them. The host is vm2."},
        {"few slots",
         {"-----", "There are not enough slots available in the system"},
         "fewer slots than the key processes"},
        {"no words", {"", " "}, ""},
    };
    for (const auto& c : cases) {
        lastwords words;
        for (const std::string& line : c.lines) words.hear(line);
        EXPECT_NE(words.text().find(c.words), std::string::npos) << c.name << ": " << words.text();
        EXPECT_EQ(words.text().empty(), *c.words == 0) << c.name;
    }
}
