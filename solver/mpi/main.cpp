// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of feiflu-mpi: the solver program as a job of several processes.
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>

#include "solver/base/tune.h"
#include "solver/equations/engines.h"
#include "solver/equations/order.h"
#include "solver/mpi/mpiranks.h"
#include "solver/mpi/multigrid.h"
#include "solver/mpi/mumps.h"
#include "solver/mpi/scotch.h"
#include "solver/program.h"

int main(int count, char** words) {
    tunelibraries(words);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // nothing stays behind when the launcher is gone
    beginprocesses(count, words);
    int code = 1;
    {
        mpiranks processes;
        setranks(processes);
        addengine("mumps", [](const settings& s) { return std::make_unique<mumps>(s.scratch); });
        addengine("multigrid", [](const settings&) { return std::make_unique<multigrid>(); });
        adddissector("scotch", dissectbyscotch);
        code = runprogram({words + 1, words + count});
    }
    std::fflush(nullptr);
    MPI_Finalize();
    _exit(code);
}
