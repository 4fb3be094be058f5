// SPDX-License-Identifier: GPL-3.0-or-later
// Which program does an analysis and how it is started: feiflu, or feiflu-mpi by way of mpiexec
// where feiflu.ini names an engine that shares the work among processes.
#pragma once

#include <string>
#include <vector>

// What feiflu.ini asks for.
struct solverwish {
    std::string engine = "cholmod";  // or mumps, multigrid, auto
    int processes = 0;               // 0: one a core
    std::string hosts;               // file; empty: this machine
};
solverwish readwish();
// Writes the engine into feiflu.ini; all else there stays. Throws runtimeerror.
void storeengine(const std::string& engine);

// Whether feiflu-mpi and its launcher are here; what is missing, or "".
std::string missingparallel();

struct solverstart {
    std::string program;
    std::vector<std::string> arguments;
};
// Throws runtimeerror that says what is missing and where.
solverstart findstart();
solverstart commandof(const solverwish& wish, const std::string& launcher,
                      const std::string& program);

// The last words of a solver, line by line as they come. What the launcher says of a process or a
// host goes into plain words; the rest of its talk does not count.
class lastwords {
  public:
    void hear(const std::string& line);
    const std::string& text() const { return words; }

  private:
    std::string words;
    bool launchertalks = false, launcherbegins = false, settled = false, named = false;
};
