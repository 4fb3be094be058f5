// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of .LES, .NSA, .NLA, .NSR and .NSL. State: what a file held that does not fit.
#include "post/stressfile.h"

#include <cmath>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/combinedstress.h"
#include "post/postproces.h"

int stressaverage, lineelstress;
bool stresslocal;
std::string stressnote;

std::string stressfile() {
    if (lineelstress) return modelname + ".LES";
    const bool global = stressglobal && !stresslocal;
    if (stressaverage) return modelname + (global ? ".NSA" : ".NLA");
    return modelname + (global ? ".NSR" : ".NSL");
}

static bool isend(std::string_view word) {
    return word == "END" || word == "\"END\"";
}

// Number of the element that a record begins with.
static int elementof(const textin& in, std::string_view word) {
    double number = 0;
    if (!readnumber(word, number) || number != std::floor(number))
        in.fail(errtype, "an element number or END was expected, found \"" +
                             toutf8(word.substr(0, 40)) + "\"");
    if (!(number >= 1 && number <= nelems()))
        in.fail(errsubscript, "the stress is of element " + numbertext(number) +
                                  ", the model in hand has elements 1 to " + numbertext(nelems()));
    return int(number);
}

static void addvalues(textin& in, float factor, int e, int corner) {
    const double largest = 1e37;  // the combined stress of such components still is a Single
    for (int k = 1; k <= stressvalues; ++k) {
        double& sum = elemstress(k, e, corner);
        sum += double(factor) * double(in.single());
        if (!(std::fabs(sum) <= largest))
            in.fail(erroverflow, "the stress " + numbertext(sum) + " of element " + numbertext(e) +
                                     " is too large");
    }
}

static int nolines;  // records of .LES that are of faces

static void addrecord(textin& in, float factor, int e, int corner) {
    in.skip(3);  // the place
    if (lineelstress) {
        nolines += nodesoftype(elems(e, 0)) != 2;
        addvalues(in, factor, e, 1);
        addvalues(in, factor, e, 2);
        return;
    }
    if (corner > stresscorners)
        in.fail(errsubscript, "element " + numbertext(e) + " has more than four stress records");
    addvalues(in, factor, e, corner);
}

// The records of one load case, up to its END.
static void readblock(textin& in, float factor) {
    const int recordsperreport = 20000;  // between two looks at the progress window
    int former = 0, corner = 0, records = 0;
    for (std::string_view word = in.word(); !isend(word); word = in.word()) {
        const int e = elementof(in, word);
        corner = e == former ? corner + 1 : 1;
        former = e;
        addrecord(in, factor, e, corner);
        elemstress(0, e, 0) = corner;
        if (++records % recordsperreport == 0 &&
            !theplatform().progress("Reading stresses", in.share()))
            throw runtimeerror{errstopped, "The reading of the stresses was cancelled"};
    }
}

static std::string noteofnolines() {
    if (nolines == 0) return {};
    return numbertext(nolines) + (nolines == 1 ? " record" : " records") +
           " of line stress belong to elements that are no lines; analyse again";
}

// Faces of the model that the file passed over; they stand at 0.
static std::string noteofempty() {
    int empty = 0;
    for (int e = 1; e <= nelems() && !lineelstress; ++e)
        empty += nodesoftype(elems(e, 0)) > 2 && elemstress(0, e, 0) == 0;
    if (empty == 0) return {};
    return (empty == 1
                ? std::string("1 element has no stress in the file and stands at 0")
                : numbertext(empty) + " elements have no stress in the file and stand at 0") +
           "; analyse again";
}

static void readstressfile() {
    stressloaded = false;
    stressnote.clear();
    nolines = 0;
    elemstress.clear();
    textin in(findnocase(stressfile()));
    elemstress.alloc(stressvalues, modelsize(sizeelements), stresscorners);
    int l = 0;
    while (!in.atend()) readblock(in, factorofcase(in, ++l));
    if (l == 0) in.fail(errpastend, "the file holds no load case");
    combinedstress();
    stressnote = noteofcases(in, l);
    if (stressnote.empty()) stressnote = noteofnolines();
    if (stressnote.empty()) stressnote = noteofempty();
    stressloaded = true;
}

// Reads once at a time: a progress window lets the views be painted meanwhile.
template <typename Onfail>
static bool readonce(Onfail onfail) {
    static bool running;
    if (stressloaded) return true;
    if (running) return false;
    running = true;
    const bool good = guarded(readstressfile, [&](const runtimeerror& e) {
        elemstress.clear();
        onfail(e);
    });
    theplatform().endprogress();
    running = false;
    return good;
}

bool readstress() {
    return readonce([](const runtimeerror& e) {
        if (e.number == errfilenotfound)
            theplatform().message("Stress output file: " + stressfile() + " Not found",
                                  icons::exclamation);
        else
            theplatform().message("Error occurred while trying to read stresses. " + e.what,
                                  icons::exclamation);
    });
}

bool readstressquiet() {
    bool stopped = false;
    const bool good = readonce([&](const runtimeerror& e) {
        stopped = e.number == errstopped;
        theplatform().showstatus(e.what);
    });
    if (stopped) throw runtimeerror{errstopped, "The report was cancelled"};
    return good;
}
