// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of displacements, mode shapes, nodal forces and the small summaries.
#include "post/postproces.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>

#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/tekfile.h"
#include "post/noise.h"
#include "post/source.h"

double modevalue;
int modecount;
std::vector<double> modevalues;
bool fieldismode, fieldread = true, fieldisnoise;
std::string fieldnote, reportnote;

noderow readnoderow(textin& in, int anadof) {
    noderow row;
    row.x = in.number();
    row.y = in.number();
    if (anadof == 0 || anadof == 3) row.z = in.number();
    if (anadof == 2) row.rotation[2] = in.number();
    if (anadof == 3)
        for (double& r : row.rotation) r = in.number();
    return row;
}

int readheader(textin& in) {
    const int count = in.count();
    if (count != nnodes())
        in.fail(errtype, "the results are of a model with " + numbertext(count) +
                             " nodes, the model in hand has " + numbertext(nnodes()));
    return in.wholewithin(0, 3, "an analysis code");
}

static const int rowsperreport = 20000;  // rows between two looks at the progress window

static void reportreading(const char* what, int row, const textin& in) {
    if (row % rowsperreport != 0 || theplatform().progress(what, in.share())) return;
    throw runtimeerror{errstopped, "The reading of " + in.name() + " was cancelled"};
}

float factorofcase(const textin& in, int l) {
    if (l > modelsize(sizeloadcases))
        in.fail(errsubscript, "the file holds more load cases than the declared " +
                                  numbertext(modelsize(sizeloadcases)) + "; see File, Model Size");
    return shownfactor(l);
}

// What is larger would be shown as infinite: half of what a Single holds, so that the length of
// three such components is a Single too.
static float stored(const textin& in, double value) {
    if (!(std::fabs(value) <= std::numeric_limits<float>::max() / 2))
        in.fail(erroverflow, "the value " + numbertext(value) + " is too large");
    return float(value);
}

static double lengthof(int n) {
    const auto d = nodes.row(1, n);
    return std::sqrt(double(d[0]) * d[0] + double(d[1]) * d[1] + double(d[2]) * d[2]);
}

static std::string shortname(const textin& in) {
    return std::filesystem::path(in.name()).filename().string();
}

std::string noteofcases(const textin& in, int blocks) {
    if (blocks == nlc()) return {};
    const std::string held = shortname(in) + " holds " + numbertext(blocks) +
                             (blocks == 1 ? " load case" : " load cases");
    return held + ", the model has " + numbertext(nlc()) +
           (blocks < nlc() ? ": the sum is not whole; analyse again" : "; analyse again");
}

static void needblock(const textin& in, int blocks, const char* what) {
    if (blocks == 0) in.fail(errpastend, std::string("the file holds no ") + what);
}

// Adds factor times value to a cell; the first load case sets it.
static void addtosum(const textin& in, float& cell, int l, float factor, double value) {
    cell = stored(in, (l == 1 ? 0 : double(cell)) + double(factor) * value);
}

enum class rotations { drop, keep };

// Blocks of .rvp into set 1 of nodes; the rotations that are kept overwrite set 0. Returns what the
// user should know of the file, or nothing.
static std::string readdispfile(rotations wanted) {
    textin in(findnocase(modelname + ".rvp"));
    const int anadof = readheader(in), count = nnodes();
    int l = 1;
    for (; !in.atend(); ++l) {
        const float lcfactor = factorofcase(in, l);
        double most = 0;
        for (int n = 1; n <= count; ++n) {
            const noderow row = readnoderow(in, anadof);
            const double value[3] = {row.x, row.y, row.z};
            for (int k = 0; k < 3; ++k) {
                addtosum(in, nodes(1, n, k), l, lcfactor, value[k]);
                if (wanted == rotations::keep && anadof >= 2)
                    addtosum(in, nodes(0, n, k), l, lcfactor, row.rotation[k]);
            }
            most = std::max(most, lengthof(n));
            maxdisp = most;
            reportreading("Reading displacements", n, in);
        }
        in.text();
    }
    needblock(in, l - 1, "load case");
    return noteofcases(in, l - 1);
}

static bool readguarded(const std::function<void()>& read, const char* message) {
    fieldnote.clear();
    fieldread = guarded(read, [&](const runtimeerror& e) {
        fieldnote = e.what;
        theplatform().showstatus(e.what);  // the reason, beside the message
        theplatform().message(message, icons::exclamation);
    });
    theplatform().endprogress();
    return fieldread;
}

bool readdisp() {
    fieldismode = false;
    const bool read = readguarded([] { fieldnote = readdispfile(rotations::drop); },
                                  "Error occurred while trying to read Displacements.");
    fieldisnoise = read && isnoise();
    if (fieldisnoise)
        fieldnote = "The displacements are numeric noise, " + numbertext(float(maxdisp)) +
                    " at most, and are not drawn: the loads move nothing";
    return read;
}

// --- the report's reading -----------------------------------------------------------------------

// Coordinates that readdispreport has overwritten; empty while set 0 of nodes holds the geometry.
static std::vector<float> keptplaces;

static void keepplaces() {
    if (!keptplaces.empty()) return;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) keptplaces.push_back(nodes(0, n, k));
}

// To the status line; what the user gave up ends the report too.
static void tellquietly(const runtimeerror& e) {
    if (e.number == errstopped) throw e;
    theplatform().showstatus(e.what);
}

bool readdispreport() {
    keepplaces();
    reportnote.clear();
    const auto read = [] { reportnote = readdispfile(rotations::keep); };
    return guarded(read, tellquietly);
}

// What stood before is taken back where it was put aside: edits that are not saved yet live on.
void reloadmodel() {
    if (keptplaces.size() != 3 * std::size_t(nnodes())) {
        keptplaces.clear();
        readtekgeometry(modelname);
        return;
    }
    std::size_t at = 0;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) nodes(0, n, k) = keptplaces[at++];
    keptplaces.clear();
}

// What is kept of the nodal forces: a picture needs the combination alone, and not the room that
// all cases of a large model take.
enum class forcerows { combination, allcases };

static void readforces(textin& in, int anadof, int l, forcerows kept) {
    const float lcfactor = factorofcase(in, l);
    for (int n = 1; n <= nnodes() + 1; ++n) {
        in.word();  // the node
        const noderow row = readnoderow(in, anadof);
        const double value[6] = {row.x,           row.y,           row.z,
                                 row.rotation[0], row.rotation[1], row.rotation[2]};
        for (int k = 1; k <= 6; ++k) {
            if (kept == forcerows::allcases) dispres(l, n, k) = value[k - 1];
            dispres(0, n, k) += double(lcfactor) * value[k - 1];
        }
        reportreading("Reading nodal forces", n, in);
    }
    in.text();
}

static void readforcefile(forcerows kept) {
    dispres.clear();
    textin in(findnocase(modelname + ".KRT"));
    const int anadof = readheader(in);
    const int cases = kept == forcerows::allcases ? modelsize(sizeloadcases) : 0;
    dispres.alloc(cases, std::max(modelsize(sizenodes), nnodes() + 1), 6);
    int l = 1;
    for (; !in.atend(); ++l) readforces(in, anadof, l, kept);
    needblock(in, l - 1, "load case");
    if (kept == forcerows::allcases) reportnote = noteofcases(in, l - 1);
}

bool readkrt() {
    reportnote.clear();
    return guarded([] { readforcefile(forcerows::allcases); },
                   [](const runtimeerror& e) {
                       dispres.clear();
                       tellquietly(e);
                   });
}

// The displacements stand without them; a file that is no longer whole is worth a word.
static void readreactions() {
    guarded([] { readforcefile(forcerows::combination); },
            [](const runtimeerror& e) {
                dispres.clear();
                if (e.number != errfilenotfound && fieldnote.empty()) fieldnote = e.what;
            });
    theplatform().endprogress();
}

bool readshape() {
    dispres.clear();
    if (!readdisp()) return false;
    if (!isenvelope()) readreactions();  // those of one combination are no envelope
    return true;
}

// --- mode shapes --------------------------------------------------------------------------------

static void readmode(textin& in, int anadof, bool wanted) {
    for (int n = 1; n <= nnodes(); ++n) {
        const noderow row = readnoderow(in, anadof);
        reportreading("Reading mode shapes", n, in);
        if (!wanted) continue;
        const double value[3] = {row.x, row.y, row.z};
        for (int k = 0; k < 3; ++k) nodes(1, n, k) = stored(in, value[k]);
        maxdisp = std::max(maxdisp, lengthof(n));
    }
}

static void readmodefile() {
    modecount = 0;
    modevalue = 0;
    modevalues.clear();
    textin in(findnocase(modelname + ".EIG"));
    const int anadof = in.wholewithin(0, 3, "an analysis code");
    const double announced = in.number();
    maxdisp = 0;
    while (!in.atend()) {
        const double value = in.number();
        modevalues.push_back(value);
        const bool wanted = ++modecount == curlcomb;
        if (wanted) modevalue = value;
        readmode(in, anadof, wanted);
    }
    needblock(in, modecount, "mode");
    // The header does not tell the count of nodes: shapes of another model show here.
    if (announced > 0 && announced != modecount)
        fieldnote = shortname(in) + " announces " + numbertext(announced) + " modes and holds " +
                    numbertext(modecount) + ": are they of this model?";
}

bool readmode() {
    fieldismode = true;
    fieldisnoise = false;
    dispres.clear();  // a mode has no reactions
    return readguarded(readmodefile, "Error occurred while trying to read modeshapes.");
}

double frequencyof(double value) {
    return std::sqrt(value) / (2 * pi);
}

// --- summaries ----------------------------------------------------------------------------------

std::vector<massrow> readmasses() {
    textin in(findnocase(modelname + ".EMS"));
    std::vector<massrow> rows;
    while (!in.atend()) {
        massrow row;
        row.group = in.count();
        row.mass = in.number();
        for (double& c : row.centre) c = in.number();
        for (double& k : row.gyration) k = in.number();
        rows.push_back(row);
    }
    return rows;
}

summary readsummary() {
    textin in(findnocase(modelname + ".DAT"));
    summary s;
    s.nodes = in.number();
    s.bandwidth = in.number();
    s.elements = in.number();
    return s;
}
