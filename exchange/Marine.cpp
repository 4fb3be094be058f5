// SPDX-License-Identifier: GPL-3.0-or-later
// Records of a NEW-PROB text.
#include "exchange/Marine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/numtext.h"
#include "core/pack.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "core/units.h"
#include "exchange/leftout.h"
#include "files/sidefiles.h"

static const int intwidth = 5, axiswidth = 10, realwidth = 12;
static const std::array<const char*, 7> displacements = {"",     "UX",   "UY",  "UZ",
                                                         "ROTX", "ROTY", "ROTZ"};
static const std::array<const char*, 7> forces = {"", "FX", "FY", "FZ", "MX", "MY", "MZ"};

static std::string rightaligned(const std::string& text, int width) {
    if (int(text.size()) > width)
        throw runtimeerror{erroverflow,
                           text + " does not fit into " + std::to_string(width) + " columns"};
    return std::string(std::size_t(width) - text.size(), ' ') + text;
}

std::string writeint(long number, int width) {
    return rightaligned(numbertext(number), width);
}

// As one digit before the point, five behind it.
static std::string exponential(double number) {
    char text[longestnumber];
    const auto end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::scientific, 5).ptr;
    std::string result(text, end);
    std::ranges::replace(result, 'e', 'E');
    return result;
}

std::string writereal(double number, int width) {
    if (!std::isfinite(number)) throw runtimeerror{erroverflow, "a value is not a number"};
    const double most = 1e9;  // more does not fit any column of this format
    if (std::fabs(number) < most) {
        std::string text = fixedtext(number, 3);
        if (text == "-0.000") text = "0.000";
        const double kept = numberof(text), lost = std::fabs(kept - number);
        const double noise = 1e-12 * std::fabs(number);
        const bool iskept = lost <= std::fabs(numberof(exponential(number)) - number) + noise;
        if (iskept && int(text.size()) <= width) return rightaligned(text, width);
    }
    return rightaligned(exponential(number), width);
}

namespace {
class marinetext {
  public:
    marinetext(const std::string& path, importreport& r) : out(path), report(r) {}
    void write() {
        writehead();
        writecoord();
        writenodes();
        writeelements();
        writedisplacements();
        for (int lc = 1; lc <= nlc(); ++lc) writeforces(lc);
        out.commit();
    }

  private:
    marinetext& put(std::string_view text) { return out.raw(text), *this; }
    marinetext& integer(long number) { return put(writeint(number, intwidth)); }
    marinetext& real(double number, int width = realwidth) { return put(writereal(number, width)); }
    void endline() { out.endline(); }

    void writehead();
    void writecoord();
    void writenodes();
    void writeelements();
    void writedisplacements();
    void writeforces(int lc);
    void row(int node, const char* keyword, double value);

    textout out;
    importreport& report;
};
}  // namespace

void marinetext::writehead() {
    for (const char* text : {"NEW-PROB      4    0   12          ", "MAXDIMEN 1000", "AMBIENT-",
                             "      0.00      9.81"}) {
        put(text);
        endline();
    }
}

// A row of a list that is no hole.
static bool stands(int node, int dof) {
    return node >= 1 && node <= nnodes() && dof >= 1 && dof <= 6;
}

// The axes of the model are the global ones.
void marinetext::writecoord() {
    put("COORD---").integer(1);
    endline();
    for (int axis = 0; axis < 3; ++axis) {
        for (int k = 0; k < 3; ++k) real(k == axis ? 1 : 0, axiswidth);
        endline();
    }
    endline();
}

void marinetext::writenodes() {
    std::vector<int> constrained(std::size_t(nnodes()) + 1, 0);
    for (int i = 1; i <= ncon; ++i)
        if (stands(connode(i), condof(i))) ++constrained[std::size_t(connode(i))];
    put("NODE-INP").integer(nnodes());
    endline();
    for (int n = 1; n <= nnodes(); ++n) {
        integer(n);
        for (int k = 0; k < 3; ++k) real(double(nodes(0, n, k)));
        integer(constrained[std::size_t(n)]);
        endline();
    }
    endline();
    report.read("Nodes", nnodes());
}

void marinetext::writeelements() {
    put("ELEMENTS").integer(nelems()).put(" ");
    endline();
    for (int e = 1; e <= nelems(); ++e) {
        integer(e).integer(long(elems(e, 0)));
        for (int k = 1; k <= 4; ++k) integer(k <= nodesoftype(elems(e, 0)) ? long(elems(e, k)) : 0);
        integer(egroup(e));
        endline();
    }
    report.read("Elements", nelems());
}

void marinetext::row(int node, const char* keyword, double value) {
    std::string field = keyword;
    field.resize(intwidth, ' ');
    integer(node).put(" ").put(field).real(value);
    endline();
}

// Rotations are degrees in the model, radians here.
void marinetext::writedisplacements() {
    put("DISPLACE");
    endline();
    for (int i = 1; i <= ncon; ++i) {
        if (!stands(connode(i), condof(i))) continue;
        const bool isrotation = condof(i) > 3;
        const double value = double(conval(i)) * (isrotation ? pi / 180 : 1);
        row(connode(i), displacements[std::size_t(condof(i))], value);
        report.read("Constraints");
        if (isrotation && value != 0)
            report.changed("Prescribed rotations turned from degrees to radians");
    }
}

void marinetext::writeforces(int lc) {
    const auto rowsofelements = long(elemload(lc, 0, 0));
    if (rowsofelements > 0) report.skipped("Loads on elements", 0, rowsofelements);
    if (lctype(lc) != caseapplied) {
        report.skipped("Load cases that are not of applied loads");
        return;
    }
    put("FORCES--").integer(lc);
    endline();
    for (int i = 1; i <= loadnode(lc, 0); ++i) {
        if (!stands(loadnode(lc, i), loaddof(lc, i))) continue;
        row(loadnode(lc, i), forces[std::size_t(loaddof(lc, i))], double(loadval(lc, i)));
        report.read("Nodal loads");
    }
}

static void refuse(const char* what, long count) {
    throw runtimeerror{errtype, "The model has " + numbertext(count) + " " + what +
                                    ", the columns of the file hold " +
                                    numbertext(mostmarineitems) + ".\nNothing was written."};
}

void exportmarine(const std::string& path, importreport& report) {
    packelems();
    if (nnodes() > mostmarineitems) refuse("nodes", nnodes());
    if (nelems() > mostmarineitems) refuse("elements", nelems());
    if (ngroups() > mostmarineitems) refuse("element groups", ngroups());
    marinetext(path, report).write();
    if (!unitstext.empty() && modelunits().metres != 1)
        report.warn("The gravity in the text, 9.81, is for metres; the model is in " + unitstext +
                    ", its numbers stand as they are");
    tellleftout(report, {parts::freenodes, parts::constraints, parts::nodalloads,
                         parts::elementloads, parts::graphics});
    packgraphics();
    textout graphicfile(path.substr(0, path.rfind('.')) + ".gra");
    writegra(graphicfile);
    graphicfile.commit();
    if (ngraphics() > 0) report.read("Graphic elements, beside it", ngraphics());
}
