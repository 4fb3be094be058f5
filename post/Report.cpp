// SPDX-License-Identifier: GPL-3.0-or-later
// The order of the report, and the dialog's commands.
#include "post/Report.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/filop.h"
#include "files/saving.h"
#include "post/contour.h"
#include "post/keptdisplay.h"
#include "post/postproces.h"
#include "post/reportsections.h"
#include "post/stressfile.h"
#include "view/moddraw.h"

const std::array<reportcheck, 11> reportchecks = {{
    {secgroups, "Group Properties", false},
    {secmesh, "Nodes & Elements", false},
    {secconstraints, "Constrains", false},
    {secloads, "Loads", false},
    {secdisplacements, "Displacements", true},
    {secforces, "Nodal Forces", true},
    {secstresses, "Element Stresses", true},
    {secaverages, "Nodal Stress Averages", true},
    {secmembers, "Member Forces", true},
    {secbalance, "Balance", true},
    {secenvelopes, "Envelopes", true},
}};

static std::array<bool, sectioncount> toldsections() {
    std::array<bool, sectioncount> wanted;
    wanted.fill(true);
    wanted[secmembers] = wanted[secbalance] = wanted[secenvelopes] = false;
    return wanted;
}
std::array<bool, sectioncount> reportwanted = toldsections();

// --- the report ---------------------------------------------------------------------------------

static void divider(reporttext& r, const char* text) {
    r.out.line(text);
    r.out.empty(2);
}

static void reportprogress(double share) {
    if (!theplatform().progress("Writing the report", share))
        throw runtimeerror{errstopped, "The report was cancelled"};
}

namespace {
struct reportstep {
    reportsection wanted;
    void (*write)(reporttext&);
};
}  // namespace

static void writewanted(reporttext& r, std::initializer_list<reportstep> steps, double from,
                        double to) {
    const double part = (to - from) / double(steps.size());
    for (const reportstep& s : steps) {
        if (reportwanted[s.wanted]) s.write(r);
        reportprogress(from += part);
    }
}

static void writeall(reporttext& r) {
    writebanner(r);
    writegeneral(r);
    divider(r,
            "~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~ MODEL INPUT DATA "
            "~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~");
    writewanted(r,
                {{secgroups, writegroups},
                 {secmesh, writemesh},
                 {secconstraints, writeconstraints},
                 {secloads, writeloads}},
                0, 0.3);
    divider(r,
            "~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~ ANALYSIS REPORT "
            "~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~");
    const analysiskind kind = readkind();
    writekind(r, kind);
    writemasses(r, kind);
    if (kind.valid)
        writewanted(r,
                    {{secdisplacements, writedisplacements},
                     {secforces, writeforces},
                     {secstresses, writestresses},
                     {secaverages, writeaverages},
                     {secmembers, writemembers},
                     {secbalance, writebalance},
                     {secenvelopes, writeenvelopes}},
                    0.3, 1);
    else
        writenoanalysis(r, kind);
    r.out.line("END");
}

// A report that was given up leaves the former one; one that ends at a fault keeps what stands.
bool savereport(const std::string& base) {
    const hourglass wait;
    bool whole = true;
    const auto told = [&](const runtimeerror& e) {
        whole = false;
        theplatform().endprogress();
        theplatform().message(e.what, icons::exclamation);
    };
    guarded(
        [&] {
            reporttext r(base + ".rpt");
            const keptdisplay kept;
            guarded([&] { writeall(r); },
                    [&](const runtimeerror& e) {
                        if (e.number == errstopped) throw e;
                        told(e);
                    });
            r.out.commit();
        },
        told);
    theplatform().endprogress();
    // A file that the report did without is told in the report.
    theplatform().showstatus(whole ? "Report written: " + base + ".rpt" : statusline());
    prepareplot();  // the legend and the value at the pointer live on what a plot has read
    return whole;
}

// --- the dialog's buttons -----------------------------------------------------------------------

static std::string withoutextension(const std::string& path) {
    const std::size_t dot = path.size() - 4;
    return path.size() > 4 && path[dot] == '.' ? path.substr(0, dot) : path;
}

bool writereport() {
    filebox box;
    box.title = "Write Report";
    box.filter = "All Files (*.*)|*.*|FE model (*.rpt)|*.rpt|Model Files (*.tek)|*.tek";
    box.filterindex = 2;
    box.saving = true;
    if (isnamed()) box.path = modelname + ".rpt";
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return false;
    const std::string base =
        withoutextension(std::filesystem::path(choice.path).lexically_normal().string());
    // The model's own report is written anew after each analysis and asks nothing.
    if (base != modelname && !askoverwrite(base, ".rpt")) return false;
    return savereport(base);
}

std::string askreport() {
    filebox box;
    box.title = "View Report";
    box.filter = "All Files (*.*)|*.*|Reports (*.rpt)|*.rpt|FE model (*.tek)|*.tek";
    box.filterindex = 2;
    if (isnamed()) box.path = modelname + ".rpt";
    const filechoice choice = theplatform().askfile(box);
    return choice.chosen ? choice.path : std::string();
}

std::string viewertitle(const std::string& path) {
    return " Kalvane Report viewer, Reportname: " + path;
}
