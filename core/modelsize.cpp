// SPDX-License-Identifier: GPL-3.0-or-later
// The model size declaration and the tests against it.
#include "core/modelsize.h"

#include <algorithm>
#include <utility>

#include "core/allocmodel.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/newmodel.h"
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
            modelsize(sizeloadcases) = loadcasesafterfailure;
            theplatform().message(
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
        [](const runtimeerror& e) { theplatform().message(e.what, icons::exclamation); });
}

// --- needs --------------------------------------------------------------------------------------

static std::array<long, nsizes + 1> needed;
static bool agreed;  // the user has agreed to larger sizes

void clearneeds() {
    needed = {};
    agreed = false;
}

void needsize(int i, long count) {
    long& most = needed[std::size_t(i)];
    most = std::max(most, count);
}

static bool exceeds(int i) {
    return needed[std::size_t(i)] > modelsize(i);
}

std::string sizefault(int i, long count) {
    static const char* const texts[] = {"",
                                        "Error: Model to large, Increase number of nodes to ",
                                        "Error: Model to large, Increase number of elements to ",
                                        "Error: Model to large, Increase Boundary Condition per "
                                        "loadcase to ",
                                        "Error: To much material groups, Increase number of groups "
                                        "to ",
                                        "Error: To much graphic Elements, Increase number of "
                                        "graphics",
                                        "",
                                        "Error: Model to large, Increase number of Loadcases to "};
    if (count <= modelsize(i)) return {};
    return texts[i] + (i == sizegraphics ? "" : std::to_string(count)) +
           " on Model Size declairation form.";
}

static void telllarge(int i) {
    if (!exceeds(i)) return;
    modeltoolarge = true;
    if (!agreed) theplatform().message(sizefault(i, needed[std::size_t(i)]), icons::exclamation);
}

static void compare(int graphicsread) {
    needsize(sizenodes, nnodes());
    needsize(sizeelements, nelems());
    needsize(sizegroups, ngroups());
    needsize(sizegraphics, graphicsread);
    for (const int i : {sizenodes, sizeelements, sizegroups, sizegraphics}) telllarge(i);
}

static void comparelists() {
    needsize(sizeconditions, ncon);
    for (int lc = 1; lc <= nlc(); ++lc)
        needsize(sizeconditions, std::max(long(loadnode(lc, 0)), long(elemload(lc, 0, 0))));
    needsize(sizeloadcases, nlc());
    if (ncomb() > maxcombinations) needsize(sizeloadcases, ncomb());
    for (const int i : {sizeconditions, sizeloadcases}) telllarge(i);
}

bool istoolarge() {
    clearneeds();
    compare(ngraphics());
    comparelists();
    return std::exchange(modeltoolarge, false);
}

static void dropcounts() {
    modelname.clear();
    clearcounts();
}

void checksize(int graphicsread) {
    compare(graphicsread);
    if (modeltoolarge) dropcounts();
}

void checkneeds() {
    for (const int i : {sizeconditions, sizeloadcases}) telllarge(i);
    if (modeltoolarge) dropcounts();
}

void checksize() {
    checksize(ngraphics());
}

// Room to go on working: a quarter more than the model needs.
static long withroom(long count) {
    return std::min(count + count / 4, 2000000000L);
}

static bool askenlarge(const std::string& told, const std::string& purpose) {
    static const char* const names[] = {"",
                                        "Number of nodes",
                                        "Number of elements",
                                        "Boundary Condition per loadcase",
                                        "Number of material groups",
                                        "Number of graphic elements",
                                        "Number of nodes on one edge",
                                        "Number of Loadcases"};
    std::string text;
    for (int i = 1; i <= nsizes; ++i)
        if (exceeds(i))
            text += std::string("\n") + names[i] + ": " + numbertext(modelsize(i)) + " to " +
                    std::to_string(withroom(needed[std::size_t(i)]));
    return theplatform().yes(told + (told.empty() ? "" : "\n\n") + "Declare larger sizes now and " +
                             purpose + "?\n" + text);
}

bool askenlarge() {
    return askenlarge("", "open the model");
}

static bool enlargesizes(bool (*allocated)()) {
    std::array<int, nsizes + 1> before{};
    bool larger = false;
    for (int i = 1; i <= nsizes; ++i) {
        before[std::size_t(i)] = modelsize(i);
        if (!exceeds(i)) continue;
        modelsize(i) = int(withroom(needed[std::size_t(i)]));
        larger = true;
    }
    agreed = true;
    if (larger && allocated()) return true;
    agreed = false;
    for (int i = 1; i <= nsizes; ++i) modelsize(i) = before[std::size_t(i)];
    return false;
}

bool enlargesizes() {
    if (enlargesizes(resetmodel)) return true;
    resetmodel();
    return false;
}

bool resizemodel() {
    keptmodel before;
    if (allocmodel()) {
        before.restoreinto();
        return true;
    }
    before.restore();
    return false;
}

bool enlargewithmodel() {
    return enlargesizes(resizemodel);
}

bool growfor(const std::vector<sizeneed>& needs, const std::string& told) {
    const auto fits = [](const sizeneed& n) { return n.count <= modelsize(n.size); };
    if (std::ranges::all_of(needs, fits)) return true;
    clearneeds();
    for (const sizeneed& n : needs) needsize(n.size, n.count);
    const bool grown = askenlarge(told, "go on") && enlargewithmodel();
    clearneeds();
    if (grown) writemodelsize();
    return grown;
}

bool growby(long newnodes, long newelements, long newgraphics) {
    return growfor({{sizenodes, nnodes() + newnodes},
                    {sizeelements, nelems() + newelements},
                    {sizegraphics, ngraphics() + newgraphics}},
                   "Increase number of nodes or elements on Model declaration form. Do: "
                   "[File,modelsize..]");
}

bool istoolittle() {
    std::string text;
    for (int i = 1; i <= nsizes; ++i)
        if (exceeds(i)) text += (text.empty() ? "" : "\n") + sizefault(i, needed[std::size_t(i)]);
    if (text.empty()) return false;
    theplatform().message(text, icons::exclamation);
    return true;
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
