// SPDX-License-Identifier: GPL-3.0-or-later
// What each engine makes of models too large for being factorised on the side.
#include <cmath>

#include "solver/equations/engines.h"
#include "solver/mpi/mpiranks.h"
#include "tests/scale/ofall.h"
#include "tests/solver/verify.h"

namespace {
// A clamped plate of 4000 unknowns and more; a second one beside it hangs on it by less than it
// needs.
build plates(bool hinged) {
    build b;
    const int g = b.plate(2.1e5, 0.3, 5), line = b.bar(2.1e5, 100, {1e4, 1e4, 1e4});
    const auto plate = [&](double from) {
        return b.mesh(typeshell4, g, 20, 20,
                      [=](double r, double s) { return vec3(from + 1000 * r, 1000 * s, 0); });
    };
    const build::grid held = plate(0), loose = plate(1200);
    b.fix(held.left(), clamped);
    b.spread(1, loose.right(), 3, 10);
    if (hinged)
        for (const int j : {5, 15})
            b.element(typetruss, line, {held.number(20, j), loose.number(0, j)});
    else
        for (const int j : {5, 15})
            b.element(typebeam, line, {held.number(20, j), loose.number(0, j)});
    return b;
}
}  // namespace

TEST(Faults, TheMultigridNamesMechanismsAsTheFactorDoes) {
    static mpiranks all;
    build sound = plates(false), loose = plates(true);
    const std::string named = loose.refusal();
    expectwords(named, {"can move freely", "mechanism"});
    const results own = sound.solve();
    setranks(all);
    useengine("multigrid", {});
    runlog log;
    log.quiet();
    std::string again;
    guarded([&] { solvemodel(loose.m, loose.s, 0, {}, log); },
            [&](const runtimeerror& e) { again = e.what; });
    const std::vector<double> u = ofall(solvemodel(sound.m, sound.s, 0, {}, log));
    workalone();
    useengine("cholmod", {});
    EXPECT_EQ(again, named);
    double change = 0, largest = 0;
    for (std::size_t i = 2; i < own.u.u.size(); i += 6) {
        largest = std::max(largest, std::fabs(own.u.u[i]));
        change = std::max(change, std::fabs(own.u.u[i] - u[i]));
    }
    EXPECT_LT(change, 1e-8 * largest);
}

// A square plate held around has every other frequency twice; one that floats has six motions
// without stiffness, which a shift of the masses holds.
TEST(Faults, TheMultigridFindsTheModesOfTheFactor) {
    static mpiranks all;
    for (const bool held : {true, false}) {
        SCOPED_TRACE(held);
        build b;
        const int g = b.plate(2.1e5, 0.3, 50, 7.85e-6);
        const build::grid at = b.mesh(
            typeshell4, g, 24, 24, [](double r, double s) { return vec3(1000 * r, 1000 * s, 0); });
        for (const std::vector<int>& edge : {at.left(), at.right(), at.bottom(), at.top()})
            if (held) b.fix(edge, clamped);
        b.s.modes = 9;
        const wanted modes = {false, false, false, false, true, true};
        const results own = b.solve(0, modes);
        setranks(all);
        useengine("multigrid", {});
        runlog log;
        log.quiet();
        const results other = solvemodel(b.m, b.s, 0, modes, log);
        workalone();
        useengine("cholmod", {});
        ASSERT_EQ(other.modes.count(), own.modes.count());
        const double largest = own.modes.value.back();
        for (std::size_t i = 0; i < own.modes.value.size(); ++i)
            EXPECT_NEAR(other.modes.value[i], own.modes.value[i], 1e-8 * largest) << i;
    }
}
