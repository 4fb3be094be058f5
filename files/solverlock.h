// SPDX-License-Identifier: GPL-3.0-or-later
// One analysis at a time in a working directory: a window holds the lock EEM.LCK from before the
// model is saved until the results are told. It holds the number of the window's process and the
// model, for others to name. The solver holds EEM.PID as long as it lives: one that is found there
// by who holds the lock has lost its window.
#pragma once

#include <string>

class solverlock {
  public:
    solverlock() = default;
    ~solverlock();
    solverlock(const solverlock&) = delete;
    solverlock& operator=(const solverlock&) = delete;

    // False while another process holds it. Ends a solver whose window is gone. Throws
    // errpathaccess where the directory takes no file.
    bool acquire(const std::string& model);
    // Who holds it: "process 4711 (/home/me/bridge)".
    static std::string owner();

  private:
    int file = -1;
};

std::string controlfile();  // EEM.CTR in appdir
void removecontrolfile();   // by who holds the lock; a failure is ignored
// At the start and the end of the program: a solver that its window left behind is ended and the
// control file goes, unless another window is at work with them.
void deletecontrolfile();
