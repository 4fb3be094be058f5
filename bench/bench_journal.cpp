// SPDX-License-Identifier: GPL-3.0-or-later
// What the journal adds to a change, steps back and forward, its memory, and the copy of unsaved
// work against a save; at 100 000 and at a million elements.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "bench/largemodel.h"
#include "bench/ratio.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Edit.h"
#include "edit/commands.h"
#include "edit/selection.h"
#include "files/filop.h"
#include "files/recovery.h"
#include "files/saving.h"
#include "tools/mesh2d.h"

static void selectone() {
    checkselectitem(selectelements);
    elemsel(0) = 1;
    elemsel(1) = float(nelems() / 2);
    nodesel(0) = 0;
}

static void moveone() {
    nodesel(0) = 1;
    nodesel(1) = nnodes() / 2;
    elemsel(0) = 0;
    commandtext = "dx=0.001";
    dispatchcommand();
}

static void deleteone() {
    selectone();
    editdelete();
}

static void atmost(const char* what, double found, double limit) {
    std::printf("%-46s %8.4f  (wanted: at most %.2f)%s\n", what, found, limit,
                found > limit ? "  ABOVE" : "");
}

// What a step adds to a change: a tenth of a second or 15 % of it, whichever is more.
static void withjournal(const std::string& what, void (*change)()) {
    const int runs = 5;
    const double floor = 0.1, share = 0.15;
    std::vector<double> plain, added;
    for (int i = 0; i < runs; ++i) {
        plain.push_back(secondsof(change));
        added.push_back(secondsof([&] {
                            const step s(what);
                            change();
                        }) -
                        plain.back());
    }
    atmost((what + ", added s").c_str(), median(added), std::max(floor, share * median(plain)));
}

// A mesh in the buffers, as the generator leaves it.
static void fillbuffers(int side) {
    makelargemodel(side);
    for (int n = 1; n <= nnodes(); ++n) {
        tmpnodes(n, 0) = float(n);
        for (int k = 0; k < 3; ++k) tmpnodes(n, k + 1) = nodes(0, n, k);
    }
    for (int e = 1; e <= nelems(); ++e) {
        for (int k = 0; k <= 4; ++k) tmpelems(e, k) = elems(e, k);
        tmpelems(e, 5) = 1;
    }
    tmpnodes(0, 0) = float(nnodes());
    tmpelems(0, 0) = float(nelems());
    setcount(items::node, 0);
    setcount(items::element, 0);
}

static double secondsofaccept(int side, bool journal) {
    fillbuffers(side);
    startjournal();
    mesh2dform form;
    return secondsof([&] {
        std::optional<step> s;
        if (journal) s.emplace("Accept");
        acceptmesh(form);
    });
}

static void accept(int side) {
    const int runs = 7;
    const double most = 1.15;
    std::vector<double> ratios;
    for (int i = 0; i < runs; ++i) {
        const double plain = secondsofaccept(side, false);
        ratios.push_back(secondsofaccept(side, true) / plain);
    }
    atmost("accept of a mesh, with the journal against without", median(ratios), most);
}

static void measure(int side, double secondsofstep) {
    makelargemodel(side);
    std::printf("%d elements\n", nelems());
    startjournal();
    withjournal("typed dx= of one node", moveone);
    withjournal("delete of one element", deleteone);
    atmost("step back, s", secondsof([] { stepback(); }), secondsofstep);
    atmost("step forward, s", secondsof([] { stepforward(); }), secondsofstep);
    const double mostmemory = 1.2, mostcopy = 1.5;
    atmost("journal, of the declared arrays", double(journalbytes()) / declaredbytes(), mostmemory);
    modelname = appdir + "/large";
    printratio(
        "copy of unsaved work against a save", 3, mostcopy, [] { writecopy(); },
        [] { savemodel(); });
    dropcopy();
}

int main() {
    startsession();
    const int large = 1000, usual = 316;  // elements a side
    measure(large, 0.3);
    const double mostpeak = 2.2;  // of the larger model alone: the peak does not come down again
    atmost("peak of all memory, of the declared arrays", peakmemory() / declaredbytes(), mostpeak);
    measure(usual, 0.05);
    accept(usual);
}
