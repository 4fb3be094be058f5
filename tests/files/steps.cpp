// SPDX-License-Identifier: GPL-3.0-or-later
// Random work on every example, taken back to the start and forward to the end: the eleven files
// are the same bytes at each stop, and after every step nothing refers to what is not there.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "core/journal.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "edit/commands.h"
#include "edit/move.h"
#include "edit/refine.h"
#include "edit/renumber.h"
#include "edit/selection.h"
#include "files/filop.h"
#include "files/saveset.h"
#include "files/saving.h"
#include "loads/attributerows.h"
#include "loads/loadcombinations.h"
#include "loads/loadkees.h"
#include "tests/support/recorder.h"
#include "tools/groups.h"
#include "tools/modifyelem.h"
#include "tools/pointentry.h"

namespace fs = std::filesystem;

namespace {

// A user who does anything: each call of work() is one step.
class randomuser {
  public:
    randomuser(sessionroom& at, unsigned seed) : room(at), dice(seed) {}

    void work() {
        using action = void (randomuser::*)();
        static const action actions[] = {
            &randomuser::type,   &randomuser::move,      &randomuser::erase,
            &randomuser::copy,   &randomuser::refine,    &randomuser::load,
            &randomuser::hold,   &randomuser::press,     &randomuser::group,
            &randomuser::modify, &randomuser::loadcase,  &randomuser::combination,
            &randomuser::draw,   &randomuser::renumber,  &randomuser::comment,
            &randomuser::free,   &randomuser::importone, &randomuser::type};
        room.platform.answerqueue.assign(9, answers::yes);
        const step s("work");
        (this->*actions[upto(std::size(actions) - 1)])();
    }

  private:
    std::size_t upto(std::size_t most) { return dice() % (most + 1); }
    std::string number() { return std::to_string(int(upto(20)) - 10); }

    void selectnodesof(std::size_t count) {
        setselectitem(selectnodes);
        clearselection();
        for (std::size_t i = 0; i < count && nnodes() > 0; ++i)
            togglenode(1 + int(upto(std::size_t(nnodes() - 1))));
    }
    void selectelementsof(std::size_t count) {
        setselectitem(selectelements);
        clearselection();
        for (std::size_t i = 0; i < count && nelems() > 0; ++i)
            toggleelement(1 + int(upto(std::size_t(nelems() - 1))));
    }
    void selectgraphicsof(std::size_t count) {
        setselectitem(selectgraphics);
        clearselection();
        for (std::size_t i = 0; i < count && ngraphics() > 0; ++i)
            togglegraphic(1 + int(upto(std::size_t(ngraphics() - 1))), 1 + int(upto(1)));
    }
    void selectany() {
        const std::size_t kind = upto(4), count = 1 + upto(5);
        if (kind <= 1) return selectnodesof(count);
        if (kind <= 3) return selectelementsof(count);
        selectgraphicsof(count);
    }

    void type() {
        static const char* const commands[] = {"dx=", "ax=*;", "rz=", "sc=*;2;", "mxy", "ry="};
        selectany();
        runcommand(commands[upto(5)] + number() + ";" + number());
    }
    void move() {
        selectnodesof(3);
        startmove();
        const double way[] = {double(upto(9)), 0.25, -1};
        movetyped(way);
        if (upto(1) == 0) releaseselection();
    }
    void erase() {
        selectany();
        editdelete();
    }
    void copy() {
        selectelementsof(4);
        upto(5) == 0 ? editcut() : editcopy();
        editpaste();
        runcommand("dx=" + number() + ";3");
        if (upto(1) == 0) releaseselection();  // what meets merges
    }
    void refine() {
        if (nelems() > 1500) return;
        selectelementsof(3);
        refineelements();
    }
    void load() {
        if (nnodes() == 0) return;
        const int n = 1 + int(upto(std::size_t(nnodes() - 1)));
        rewritenodalloads(curlc, {n}, {{"Fx =", number()}, {"Fy =", "2"}, {"Fz =", ""}});
    }
    void hold() {
        if (nnodes() == 0) return;
        const int n = 1 + int(upto(std::size_t(nnodes() - 1)));
        rewriteconstraints({n}, {{"Dx =", "0"}, {"Dy =", number()}});
    }
    void press() {
        if (nelems() == 0) return;
        const int e = 1 + int(upto(std::size_t(nelems() - 1)));
        rewriteelementloads(curlc, {e}, {{"Px =", ""}, {"Py =", number()}, {"Pz =", "1"}});
    }
    void group() {
        groupform form = opengroups();
        const std::size_t kind = upto(3);
        choosegroup(form, int(upto(std::size_t(ngroups() - 1))));
        if (kind == 0) addgroup(form);
        if (kind == 1) deletegroup(form);
        if (kind >= 2) {
            editfield(form, 1 + int(upto(11)), number());
            updategroups(form);
        }
        readygroups(form);
    }
    void modify() {
        selectelementsof(3);
        modifyelemform form = openmodifyelem();
        form.togroup = int(upto(std::size_t(ngroups())));
        form.mirror = upto(1) == 0;
        modselelem(form);
    }
    void loadcase() {
        loadcaseform form = openloadkees();
        const std::size_t kind = upto(3);
        if (kind == 0) addloadcase(form);
        if (kind == 1) delloadcase(form);
        if (kind == 2) chooseloadcase(form, int(upto(std::size_t(nlc() - 1))));
        if (kind == 3) {
            choosekind(form, int(upto(4)));
            updateloadcase(form);
        }
    }
    void combination() {
        combinationform form = openloadcombinations();
        const std::size_t kind = upto(2);
        if (kind == 0) addcopy(form);
        if (kind == 1) delloadcomb(form);
        if (kind == 2) {
            form.multiplier = number();
            updateloadcomb(form);
        }
    }
    void draw() {
        startdrawing(upto(1) == 0 ? kindline : kindcurve);
        for (int i = 0; i < 3; ++i) runcommand("ax=" + number() + ";" + number());
        addready();
    }
    void renumber() { renumbermodel(); }
    void comment() { commenttext += number(); }
    void free() {
        startmode(addnodemode);
        runcommand("ax=" + number() + ";" + number());
        addready();
    }
    void importone() {
        if (nelems() > 1500 || !importmodel(room.file("joints"))) return;
        editpaste();
        releaseselection();
    }

    sessionroom& room;
    std::mt19937 dice;
};

// Closes up what a save closes up, and the files that it writes.
std::string saved(const sessionroom& room) {
    std::string all;
    for (const std::string& extension : setextensions)
        all += contentof(room.file("out") + extension);
    return all;
}

}  // namespace

static std::vector<std::string> examples() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sourcedir() + "/data/examples"))
        if (entry.path().extension() == ".tek") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

class RandomSteps : public testing::TestWithParam<std::string> {};

TEST_P(RandomSteps, GoBackAndForwardToTheSameFiles) {
    sessionroom room;
    wiremouse();
    wirepointentry();
    for (const auto& entry : fs::directory_iterator(sourcedir() + "/data/examples"))
        if (entry.is_regular_file()) fs::copy_file(entry, room.file(entry.path().filename()));
    for (const int i : {1, 2, 5}) modelsize(i) = 20000;
    ASSERT_TRUE(openmodel(room.file(GetParam())));
    modelname = room.file("out");
    ASSERT_TRUE(savemodel());
    const std::string first = saved(room);
    startjournal();

    const unsigned seed = randomseed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    randomuser user(room, seed);
    const int works = 200;
    for (int i = 0; i < works; ++i) {
        user.work();
        ASSERT_EQ(checkreferences(), std::vector<std::string>{}) << "after work " << i;
    }
    {
        const step s("Save");
        ASSERT_TRUE(savemodel());
    }
    const std::string last = saved(room);
    const int count = int(stepsback(1000).size());
    EXPECT_GT(count, works / 2);
    const auto save = [&] {
        EXPECT_TRUE(savemodel());
        return saved(room);
    };
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(stepback());
            ASSERT_EQ(checkreferences(), std::vector<std::string>{}) << "back " << i;
        }
        EXPECT_TRUE(save() == first) << "back at the start";
        ASSERT_TRUE(stepforward(count));
        EXPECT_TRUE(save() == last) << "forward at the end";
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, RandomSteps, testing::ValuesIn(examples()),
                         [](const auto& entry) { return entry.param; });
