// SPDX-License-Identifier: GPL-3.0-or-later
// The model size declaration and the tests against it.
#include "core/modelsize.h"

#include <algorithm>
#include <utility>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"

static const int nsizes = 7;
static const int loadcasesafterfailure = 2;

static std::string sizefile() {
    return appdir + "/decmem.DAT";
}

void defaultmodelsize() {
    static const int sizes[] = {0, 5000, 5000, 5000, 5000, 2000, 200, 4};
    modelsize.alloc(nsizes);
    for (int i = 1; i <= nsizes; ++i) modelsize(i) = sizes[i];
}

void readmodelsize() {
    defaultmodelsize();
    guarded(
        [] {
            textin in(findnocase(sizefile()));
            std::array<int, nsizes + 1> sizes{};
            for (int i = 1; i <= nsizes; ++i) {
                sizes[std::size_t(i)] = in.count();
                if (sizes[std::size_t(i)] < 1)
                    in.fail(errtype, "a size of at least 1 was expected");
            }
            for (int i = 1; i <= nsizes; ++i) modelsize(i) = sizes[std::size_t(i)];
        },
        [](const runtimeerror&) {
            defaultmodelsize();
            modelsize(7) = loadcasesafterfailure;
            door().message(
                "Error reading Model size. Set your default model size!!  Use [File,Model size..] "
                "from the main menu",
                icons::exclamation);
            writemodelsize();
        });
}

void writemodelsize() {
    guarded(
        [] {
            textout out(sizefile());
            for (int i = 1; i <= nsizes; ++i) out.line(modelsize(i));
            out.commit();
        },
        [](const runtimeerror& e) { door().message(e.what, icons::exclamation); });
}

static void telllarge(const std::string& text) {
    door().message(text, icons::exclamation);
    modeltoolarge = true;
}

static void compare(int graphicsread) {
    const std::string tail = " on Model Size declairation form.";
    const auto count = [](float n) { return numbertext(n); };
    if (nodes(0, 0, 0) > float(modelsize(1)))
        telllarge("Error: Model to large, Increase number of nodes to " + count(nodes(0, 0, 0)) +
                  tail);
    if (elems(0, 0) > float(modelsize(2)))
        telllarge("Error: Model to large, Increase number of elements to " + count(elems(0, 0)) +
                  tail);
    if (groups(0, 0) > modelsize(4))
        telllarge("Error: To much material groups, Increase number of groups to " +
                  numbertext(groups(0, 0)) + tail);
    if (graphicsread > modelsize(5))
        telllarge("Error: To much graphic Elements, Increase number of graphics" + tail);
}

// These two have no message of old: a file that exceeds them fails where it is read.
static void comparelists() {
    long rows = ncon;
    for (int lc = 1; lc <= nlc(); ++lc)
        rows = std::max({rows, long(loadnode(lc, 0)), long(elemload(lc, 0, 0))});
    const std::string tail = " on Model Size declairation form.";
    if (rows > modelsize(3))
        telllarge("Error: Model to large, Increase Boundary Condition per loadcase to " +
                  std::to_string(rows) + tail);
    const int cases = std::max(nlc(), ncomb() > maxcombinations ? ncomb() : 0);
    if (cases > modelsize(7))
        telllarge("Error: Model to large, Increase number of Loadcases to " +
                  std::to_string(cases) + tail);
}

bool istoolarge() {
    compare(ngraphics());
    comparelists();
    return std::exchange(modeltoolarge, false);
}

void checksize(int graphicsread) {
    compare(graphicsread);
    if (!modeltoolarge) return;
    modelname.clear();
    ncon = nload = 0;
    nodes(0, 0, 0) = 0;
    elems(0, 0) = 0;
    graphics(0, 0, 0) = 0;
    groups(0, 0) = 0;
    resultflag = 0;
}

void checksize() {
    checksize(ngraphics());
}

std::array<double, 7> calcmem(const std::array<double, 7>& t) {
    std::array<double, 7> cost{};
    cost[0] = t[0] * 17 * 8 / 1000;
    cost[1] = t[1] * 84 * 8 / 1000;
    cost[2] = t[2] * 3 * 8 / 1000 + t[6] * (t[2] * 3 + 4) * 8 / 1000;
    cost[3] = t[3] * 13 * 8 / 1000;
    cost[4] = t[4] * 34 * 8 / 1000;
    cost[5] = (t[5] * 11 * 8 + t[5] * t[5] * 8) / 1000;
    double total = 0;
    for (std::size_t i = 0; i < 6; ++i) total += cost[i];
    cost[6] = total / 1000;
    return cost;
}
