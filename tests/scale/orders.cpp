// SPDX-License-Identifier: GPL-3.0-or-later
// Orders of elimination among processes: both libraries dissect, and MUMPS goes by what they find.
// No order and no engine changes the numbers.
#include <cmath>

#include "solver/dofs/deal.h"
#include "solver/dofs/makedofs.h"
#include "solver/equations/factor.h"
#include "solver/equations/order.h"
#include "solver/equations/solve.h"
#include "solver/mpi/mpiranks.h"
#include "solver/mpi/mumps.h"
#include "solver/mpi/scotch.h"
#include "tests/solver/build.h"

TEST(Orders, MumpsTakesThatOfTheOwnFactor) {
    static mpiranks all;
    build b;
    b.s = {};
    const int g = b.plate(2.1e5, 0.3, 5);
    const build::grid at =
        b.mesh(typeshell4, g, 60, 60, [](double r, double s) { return vec3(r, s, 0); });
    b.fix(at.left(), clamped);
    b.fix(at.number(60, 60), {3});  // owners of six unknowns and one of five
    adddissector("scotch", dissectbyscotch);
    runlog log;
    log.quiet();
    double operations[2];
    for (const std::string name : {"metis", "scotch"}) {
        SCOPED_TRACE(name);
        usedissector(name, log);
        model one = b.m, part = b.m;
        const equations alone = makeequations(one, b.s, 3, log);
        factor own;
        own.analyse(alone.stiffness);
        setranks(all);
        keepstretch(part);
        dealmodel(part);
        const equations shared = makeequations(part, b.s, 3, log);
        mumps other("");
        other.describe(part, shared.dofs);
        other.analyse(shared.stiffness);
        workalone();
        // Each merges columns in its own way.
        EXPECT_NEAR(other.operations() / own.operations(), 1, 0.2);
        operations[name == "scotch"] = own.operations();
    }
    usedissector("metis", log);
    EXPECT_NE(operations[0], operations[1]);
    EXPECT_NEAR(operations[1] / operations[0], 1, 0.4);
}

// By this size the rounding of a factor shows in the eighth digit, unless it is refined.
TEST(Orders, ALargePlateIsTheSameInAll) {
    build b;
    const build::grid at = b.mesh(typeshell4, b.plate(2.1e5, 0.3, 5), 160, 160,
                                  [](double r, double s) { return vec3(1000 * r, 1000 * s, 0); });
    b.fix(at.left(), clamped);
    b.spread(1, at.right(), 2, 1000);
    b.spread(1, at.right(), 3, 10);
    adddissector("scotch", dissectbyscotch);
    runlog log;
    log.quiet();
    const results one = b.solve();
    usedissector("scotch", log);
    const results other = b.solve();
    usedissector("metis", log);
    double change = 0, largest = 0;
    for (std::size_t i = 2; i < one.u.u.size(); i += 6) {
        largest = std::max(largest, std::fabs(one.u.u[i]));
        change = std::max(change, std::fabs(one.u.u[i] - other.u.u[i]));
    }
    EXPECT_LT(change, 1e-9 * largest);
    EXPECT_GT(change, 0);
}
