// SPDX-License-Identifier: GPL-3.0-or-later
// The choice of an engine, its settings and its words, and what holds for engines of any kind.
#include "solver/equations/engines.h"

#include "core/textfile.h"
#include "solver/base/enginetexts.h"
#include "solver/equations/factor.h"
#include "solver/equations/softness.h"
#include "tests/solver/verify.h"

TEST(Engines, AutoTakesTheFastestThatFits) {
    const double gib = 1024.0 * 1024 * 1024;
    const struct {
        const char* name;
        engineneeds needs;
        const char *engine, *why;
    } cases[] = {
        {"fits", {8 * gib, 9 * gib, 1, 4, false}, "cholmod", "8192 MiB of 9216 MiB"},
        {"just not", {8 * gib, 8.8 * gib, 5 * gib, 4, false}, "mumps", "4096 MiB of 5120 MiB"},
        {"one process", {8 * gib, 4 * gib, 20 * gib, 1, false}, "multigrid", "no scratch"},
        {"disc", {80 * gib, 4 * gib, 4 * gib, 4, true}, "mumps", "scratch folder"},
        {"too large", {80 * gib, 4 * gib, 4 * gib, 4, false}, "multigrid", "no scratch folder"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const enginechoice choice = chooseengine(c.needs);
        EXPECT_EQ(choice.engine, c.engine);
        expectwords(choice.why, {c.why});
    }
}

TEST(Engines, SettingsNameThemAndNothingElse) {
    const tempfolder folder;
    const std::string path = folder / "feiflu.ini";
    const auto read = [&](const std::string& text, settings& s) {
        std::string why;
        runlog log;
        textout out(path);
        out.raw(text);
        out.commit();
        guarded([&] { s = readsettings(path, log); }, [&](const runtimeerror& e) { why = e.what; });
        for (const std::string& warning : log.warnings()) why += warning;
        return why;
    };
    settings s;
    EXPECT_EQ(read("engine = mumps\nprocesses = 4\nhosts = /etc/my hosts # two\nscratch =\n", s),
              "");
    EXPECT_EQ(s.engine, "mumps");
    EXPECT_EQ(s.processes, 4);
    EXPECT_EQ(s.hosts, "/etc/my hosts");
    EXPECT_EQ(s.scratch, "");
    expectwords(read("engine = pardiso\n", s), {"line 1", "\"pardiso\" is no value for engine"});
    expectwords(read("\nprocesses = -1\n", s), {"line 2", "processes", "a whole number from 0"});
    for (const std::string wrong : {"shear = 2", "shear = -0.1", "shear = nan", "length = 1e-300",
                                    "length = 0", "gravity = 1e29", "mass = inf", "cd = many"})
        expectwords(read(wrong + "\n", s), {"line 1", "is no value for", "a number from"});
    EXPECT_EQ(read("shear = 1\nlength = 1e-9\nwaterdensity = 0\n", s), "");
    // This program has its own factor alone, and says who has the others.
    EXPECT_TRUE(hasengine("cholmod"));
    std::string why;
    guarded([&] { useengine("mumps", s); }, [&](const runtimeerror& e) { why = e.what; });
    expectwords(why, {"engine = mumps", "mpiexec -n 2 feiflu-mpi", "engine = cholmod"});
}

TEST(Engines, FaultsComeInTheProgramsWords) {
    const struct {
        int code;
        const char* words;
    } cases[] = {{-9, "Not enough memory"},
                 {-13, "more processes"},
                 {-90, "The scratch folder /big does not take the factor"},
                 {-51, "too large for the ordering"},
                 {-3, "fault -3, 7"}};
    for (const auto& c : cases) expectwords(mumpsfault(c.code, 7, "/big"), {c.words, "feiflu.ini"});
}

namespace {
// The own factor as one of those that show no triangles.
class whole : public factor {
  public:
    bool splits() const override { return false; }
    using factor::solve;
    void solve(double* x, int columns, triangles which) override {
        EXPECT_EQ(which, triangles::both);
        factor::solve(x, columns, which);
    }
    double smallestpivot(const sparsematrix& a, std::int64_t& unknown) override {
        return softness(*this, a, unknown);
    }
};
struct ownback {
    ~ownback() { useengine("cholmod", {}); }
};

// A square plate on its left edge or free, with pairs of modes in the second case.
build plate(bool free) {
    build b;
    b.s.modes = 8;
    const int g = b.plate(2e5, 0.3, 0.01, 8e-6);
    const build::grid at =
        b.mesh(typeshell4, g, 12, 12, [](double r, double s) { return vec3(r, s, 0); });
    if (!free) b.fix(at.left(), clamped);
    b.addcase();
    b.load(1, at.number(12, 12), 3, 1);
    return b;
}
}  // namespace

TEST(Engines, ModesNeedNoTriangles) {
    const ownback back;
    addengine("whole", [](const settings&) { return std::make_unique<whole>(); });
    wanted modes;
    modes.displacements = false;
    modes.modes = true;
    for (const bool free : {false, true}) {
        build b = plate(free);
        useengine("cholmod", b.s);
        const results one = b.solve(0, modes);
        useengine("whole", b.s);
        const results other = b.solve(0, modes);
        ASSERT_EQ(one.modes.count(), other.modes.count());
        const double highest = one.modes.value.back();
        for (std::size_t i = 0; i < one.modes.value.size(); ++i)
            EXPECT_NEAR(one.modes.value[i], other.modes.value[i], 1e-9 * highest) << i;
    }
}

// The slender one is sound however soft; the free one is refused, by the same node, whether pivots
// or softness tell of it.
TEST(Engines, MechanismsAreFoundWithoutPivots) {
    const ownback back;
    addengine("whole", [](const settings&) { return std::make_unique<whole>(); });
    build held = plate(false), free = plate(true);
    const std::string named = free.refusal();
    expectwords(named, {"can move freely"});
    const double own = moved(held.solve(), 1, held.m.nnodes(), 3);
    useengine("whole", {});
    EXPECT_EQ(free.refusal(), named);
    EXPECT_EQ(moved(held.solve(), 1, held.m.nnodes(), 3), own);
    EXPECT_GT(own, 0);
}
