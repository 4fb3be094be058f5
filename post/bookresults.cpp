// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of the illustrated report that tell results. Files are read row by row, so that those
// larger than memory can be told.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "core/catalogue.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/modelsize.h"
#include "core/numtext.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/textfile.h"
#include "post/balance.h"
#include "post/book.h"
#include "post/bookparts.h"
#include "post/combinedstress.h"
#include "post/components.h"
#include "post/legend.h"
#include "post/members.h"
#include "post/plainnumber.h"
#include "post/plotunits.h"
#include "post/postproces.h"
#include "post/resultstream.h"
#include "post/source.h"
#include "post/stressfile.h"

using cells = std::vector<std::string>;

static const char* const displacementnames[] = {"DX", "DY", "DZ", "RX", "RY", "RZ"};
static const char* const forcenames[] = {"FX", "FY", "FZ", "MX", "MY", "MZ"};

static std::string displacementheading(int freedom) {
    return headed(displacementnames[freedom], freedom < 3 ? "L" : "");
}

static std::string forceheading(int freedom) {
    return headed(forcenames[freedom], freedom < 3 ? "F" : "F.L");
}

// What a part needs and does not find, or what is damaged, is told in its place.
template <typename Work>
static void told(booksink& b, Work work) {
    guarded(work, [&](const runtimeerror& e) {
        if (e.number == errstopped) throw e;
        b.text(e.number == errfilenotfound ? "There are no such results." : e.what, true);
    });
}

bool hasresults(booksink& b) {
    const bool good =
        guarded([] { textin in(findnocase(modelname + ".rvp")); }, [](const runtimeerror&) {});
    if (!good)
        b.text("No analysis has been performed.", true);
    else if (isresultstale())
        b.text(staletext, true);
    return good;
}

// --- rows of combinations -----------------------------------------------------------------------

// Runs take(row) over the rows of a combination.
template <typename Take>
static void eachrow(resultrows& rows, int c, Take take) {
    const long rowsperlook = 10000;
    rows.begin(factorsof(c));
    resultrows::row row;
    for (long i = 1; rows.next(row); ++i) {
        take(row);
        if (i % rowsperlook == 0) bookprogress();
    }
}

static std::string nameof(int c) {
    return shownname(lcombname(c), 60);
}

static double degrees(double x, int freedom) {
    return freedom >= 3 ? x * 180 / pi : x;
}

// --- balance and masses -------------------------------------------------------------------------

void bookbalance(booksink& b) {
    if (!hasresults(b)) return;
    const balance of = readbalance();
    if (of.cases.empty()) return b.text(of.fault, true);
    bool open = false;
    const auto close = [&] {
        if (std::exchange(open, false)) b.endtable();
    };
    for (const balancerow& row : balancepage(of)) {
        if (row.head) {
            close();
            std::vector<bookcolumn> columns = {{"", false, 1.6}};
            for (std::size_t k = 1; k < row.cells.size(); ++k) columns.push_back({row.cells[k]});
            const int usual = 9;  // rows of a load case
            b.begintable(row.cells[0], columns, usual);
            open = true;
        } else if (row.cells.size() > 1) {
            b.row(row.cells, row.red);
        } else {
            close();
            b.text(row.cells[0], true);
        }
    }
    close();
}

void bookmasses(booksink& b) {
    told(b, [&] {
        b.begintable("",
                     {{"Group", false, 2},
                      {headed("Mass", "M")},
                      {headed("Centre X", "L")},
                      {headed("Centre Y", "L")},
                      {headed("Centre Z", "L")}},
                     ngroups() + 1);
        double whole = 0, centre[3] = {};
        for (const massrow& row : readmasses()) {
            if (row.group < 1 || row.group > ngroups()) continue;
            cells line = {shownname(groupname(row.group), 40), shorttext(row.mass)};
            for (int k = 0; k < 3; ++k) {
                line.push_back(shorttext(row.centre[k]));
                centre[k] += row.mass * row.centre[k];
            }
            whole += row.mass;
            b.row(line);
        }
        cells total = {"Total", shorttext(whole)};
        for (const double c : centre) total.push_back(shorttext(whole > 0 ? c / whole : 0));
        b.row(total);
        b.endtable();
    });
}

// --- displacements and reactions ----------------------------------------------------------------

namespace {
struct extreme {
    double value = 0;
    int item = 0;
    void take(double v, int i) {
        if (item == 0 || std::fabs(v) > std::fabs(value)) value = v, item = i;
    }
    std::string text(double scale = 0) const {
        return item == 0 ? "" : plainnumber(value, scale) + " at " + numbertext(item);
    }
};
}  // namespace

void bookdisplacements(booksink& b) {
    if (!hasresults(b)) return;
    told(b, [&] {
        resultrows rows(modelname + ".rvp", resultkinds::displacements);
        const std::vector<int> freedoms = freedomsof(rows.anadof());
        std::vector<bookcolumn> columns = {{"Combination", false, 1.6}, {headed("Length", "L")}};
        for (const int f : freedoms) columns.push_back({displacementheading(f)});
        b.begintable("Largest by size, and the node (rotations in degrees)", columns, ncomb());
        for (int c = 1; c <= ncomb(); ++c) {
            extreme length, each[6];
            eachrow(rows, c, [&](const resultrows::row& row) {
                double square = 0;
                for (std::size_t i = 0; i < freedoms.size(); ++i) {
                    if (freedoms[i] < 3) square += row.values[i] * row.values[i];
                    each[i].take(degrees(row.values[i], freedoms[i]), row.item);
                }
                length.take(std::sqrt(square), row.item);
            });
            cells line = {nameof(c), length.text()};
            double turn = 0;
            for (std::size_t i = 0; i < freedoms.size(); ++i)
                if (freedoms[i] >= 3) turn = std::max(turn, std::fabs(each[i].value));
            for (std::size_t i = 0; i < freedoms.size(); ++i)
                line.push_back(each[i].text(freedoms[i] < 3 ? length.value : turn));
            b.row(line);
        }
        b.endtable();
    });
}

// The rows of all nodes that are wanted, a table a combination.
template <typename Wanted>
static void nodetables(booksink& b, bool areforces, int count, Wanted wanted) {
    told(b, [&] {
        resultrows rows(modelname + (areforces ? ".KRT" : ".rvp"),
                        areforces ? resultkinds::forces : resultkinds::displacements);
        const std::vector<int> freedoms = freedomsof(rows.anadof());
        std::vector<bookcolumn> columns = {{"Node"}};
        for (const int f : freedoms)
            columns.push_back({areforces ? forceheading(f) : displacementheading(f)});
        for (int c = 1; c <= ncomb(); ++c) {
            b.begintable("Combination " + numbertext(c) + ", " + nameof(c), columns, count);
            double most[2] = {};  // of translations or forces, of rotations or moments
            eachrow(rows, c, [&](const resultrows::row& row) {
                for (std::size_t i = 0; i < freedoms.size() && row.item > 0; ++i) {
                    double& size = most[freedoms[i] >= 3];
                    size = std::max(size, std::fabs(row.values[i]));
                }
            });
            std::array<double, 6> sum{};
            eachrow(rows, c, [&](const resultrows::row& row) {
                if (row.item == 0 || !wanted(row.item)) return;
                cells line = {numbertext(row.item)};
                for (std::size_t i = 0; i < freedoms.size(); ++i) {
                    const int f = freedoms[i];
                    const auto shown = [&](double x) { return areforces ? x : degrees(x, f); };
                    line.push_back(plainnumber(shown(row.values[i]), shown(most[f >= 3])));
                    sum[i] += row.values[i];
                }
                b.row(line);
            });
            if (areforces) {
                cells line = {"Sum"};
                for (std::size_t i = 0; i < freedoms.size(); ++i)
                    line.push_back(freedoms[i] < 3 ? plainnumber(sum[i], most[0]) : "");
                b.row(line, false);
            }
            b.endtable();
        }
    });
}

void bookreactions(booksink& b) {
    if (!hasresults(b)) return;
    std::vector<char> held(std::size_t(nnodes()) + 1);
    for (int i = 1; i <= ncon; ++i)
        if (connode(i) >= 1 && connode(i) <= nnodes()) held[std::size_t(connode(i))] = 1;
    const int count = int(std::ranges::count(held, 1)) + 1;
    nodetables(b, true, count, [&](int n) { return held[std::size_t(n)] != 0; });
}

void bookalldisplacements(booksink& b) {
    if (hasresults(b)) nodetables(b, false, 0, [](int) { return true; });
}

void bookallforces(booksink& b) {
    if (hasresults(b)) nodetables(b, true, 0, [](int) { return true; });
}

// --- stresses -----------------------------------------------------------------------------------

static double combinedat(const double* values) {
    float s[stressvalues] = {};
    for (int k = 1; k < stressvalues; ++k) s[k] = float(values[k - 1]);
    return combinedstressof(s);
}

// Runs take(element, end or corner, its values) for each record of a file.
template <typename Take>
static void eachstress(resultrows& rows, bool lines, int c, Take take) {
    int former = 0, corner = 0;
    eachrow(rows, c, [&](const resultrows::row& row) {
        corner = row.item == former ? corner + 1 : 1;
        former = row.item;
        take(row.item, lines ? 1 : corner, row.values.data() + 3);
        if (lines) take(row.item, 2, row.values.data() + 3 + stressvalues);
    });
}

static bool isgrouped(int e) {
    return egroup(e) >= 1 && egroup(e) <= ngroups();
}

static void largeststresses(booksink& b, bool lines) {
    resultrows rows(modelname + (lines ? ".LES" : ".NSL"),
                    lines ? resultkinds::linestresses : resultkinds::stresses);
    std::vector<bookcolumn> columns = {{"Group", false, 1.6}, {"Combination", false, 1.4}};
    for (const char* name : {"SX", "SY", "SXY", "Combined"})
        columns.push_back({headed(name, "F/L^2"), true, 1.3});
    const double factor = shownfactor("F/L^2");
    using four = std::array<extreme, 4>;
    std::map<std::pair<int, int>, four> most;  // by group and combination
    for (int c = 1; c <= ncomb(); ++c)
        eachstress(rows, lines, c, [&](int e, int, const double* v) {
            if (!isgrouped(e)) return;
            four& x = most[{egroup(e), c}];
            x[0].take(factor * v[0], e);
            x[1].take(factor * v[1], e);
            x[2].take(factor * v[3], e);
            x[3].take(factor * combinedat(v), e);
        });
    if (most.empty()) return;
    b.begintable(lines ? "Line elements: largest by size, and the element"
                       : "Faces, local axes: largest by size, and the element",
                 columns, int(most.size()));
    for (const auto& [where, x] : most) {
        cells line = {shownname(groupname(where.first), 40), nameof(where.second)};
        for (const extreme& one : x) line.push_back(one.text());
        b.row(line);
    }
    b.endtable();
}

void bookstresses(booksink& b) {
    if (!hasresults(b)) return;
    for (const bool lines : {false, true}) told(b, [&] { largeststresses(b, lines); });
}

static void stresstables(booksink& b, bool lines) {
    resultrows rows(modelname + (lines ? ".LES" : ".NSL"),
                    lines ? resultkinds::linestresses : resultkinds::stresses);
    std::vector<bookcolumn> columns = {{"Element", true, 1.2}, {"Node", true, 1.2}};
    for (int k = 0; k < toldcomponents; ++k)
        columns.push_back({headed(stresscomponents[k].label, "F/L^2")});
    const double factor = shownfactor("F/L^2");
    for (int c = 1; c <= ncomb(); ++c) {
        b.begintable("Combination " + numbertext(c) + ", " + nameof(c) +
                         (lines ? ", line elements" : ", faces, local axes"),
                     columns);
        eachstress(rows, lines, c, [&](int e, int corner, const double* v) {
            cells line = {numbertext(e)};
            line.push_back(corner <= nodesoftype(elems(e, 0)) ? numbertext(int(elems(e, corner)))
                                                              : "");
            for (int k = 1; k < stressvalues; ++k) line.push_back(shorttext(factor * v[k - 1]));
            line.push_back(shorttext(factor * combinedat(v)));
            b.row(line);
        });
        b.endtable();
    }
}

void bookallstresses(booksink& b) {
    if (!hasresults(b)) return;
    for (const bool lines : {false, true}) told(b, [&] { stresstables(b, lines); });
}

void bookallmembers(booksink& b) {
    if (!hasresults(b)) return;
    const std::vector<int> members = allmembers();
    if (members.empty()) return b.text("There are no forces along line elements.");
    const int rowsperlook = 1000;
    std::vector<bookcolumn> columns = {{"Element"}, {"Place", true, 0.7}};
    for (const quantityrow& row : quantityrows) columns.push_back({row.label});
    b.text(
        "Places are shares of the length from the first node: the ends, and where a value is "
        "largest or smallest.");
    for (int c = 1; c <= ncomb(); ++c) {
        b.begintable("Combination " + numbertext(c) + ", " + nameof(c), columns);
        int count = 0;
        for (const int e : members) {
            if (++count % rowsperlook == 0) bookprogress();
            const memberline* const m = memberin(e, c);
            if (!m) continue;
            for (const int i : tellingstations(*m)) {
                cells line = {numbertext(e), shorttext(double(i) / (memberstations - 1))};
                for (const auto& of : m->value) line.push_back(shorttext(double(of[i])));
                b.row(line);
            }
        }
        b.endtable();
        if (!membernote.empty()) b.text(membernote, true);
    }
}

// --- pictures -----------------------------------------------------------------------------------

void bookshapes(booksink& b) {
    if (!hasresults(b)) return;
    for (int c = 1; c <= ncomb(); ++c) {
        scene s;
        s.caption = "Deformed shape, " + nameof(c);
        s.combination = c;
        s.deformed = true;
        bookpicture(b, s);
    }
}

void bookcontours(booksink& b) {
    if (!hasresults(b)) return;
    bool faces = false, lines = false;
    for (int e = 1; e <= nelems(); ++e) {
        const int elnn = nodesoftype(elems(e, 0));
        faces = faces || elnn > 2;
        lines = lines || elnn == 2;
    }
    for (int c = 1; c <= ncomb(); ++c)
        for (const bool ofline : {false, true}) {
            if (ofline ? !lines : !faces) continue;
            scene s;
            s.caption =
                std::string(ofline ? "Line elements" : "Faces") + ", combined stress, " + nameof(c);
            s.combination = c;
            s.contour = !ofline;
            s.lines = ofline;
            s.hidden = !ofline;
            bookpicture(b, s);
        }
}

// Of each combination those that are more than rounding.
void bookdiagrams(booksink& b, const std::vector<memberquantity>& quantities) {
    if (!hasresults(b)) return;
    const std::vector<int> members = allmembers();
    if (members.empty()) return b.text("There are no forces along line elements.");
    const int before = curlcomb;
    for (int c = 1; c <= ncomb(); ++c)
        for (const memberquantity q : quantities) {
            curlcomb = c;
            const memberrange range = rangeof(q, members);
            if (range.size() == 0 || range.isnoise()) continue;
            scene s;
            s.caption = std::string(quantityrows[q].caption) + " " + quantityrows[q].label + ", " +
                        nameof(c);
            s.combination = c;
            s.diagram = int(q) + 1;
            bookpicture(b, s);
        }
    curlcomb = before;
}

// --- modes --------------------------------------------------------------------------------------

void bookmodes(booksink& b) {
    const int pictures = 6;
    std::vector<double> list;
    guarded(
        [&] {
            resultrows rows(modelname + ".EIG", resultkinds::modes);
            for (int m = 1; m <= rows.blocks(); ++m) list.push_back(rows.modevalue(m));
        },
        [](const runtimeerror&) {});
    if (list.empty()) return b.text("No modes of vibration have been computed.");
    b.begintable("", {{"Mode"}, {"omega^2"}, {"Frequency, Hz"}, {"Period, s"}});
    for (std::size_t i = 0; i < list.size(); ++i) {
        const double hz = list[i] > 0 ? frequencyof(list[i]) : 0;
        b.row({numbertext(int(i + 1)), shorttext(list[i]), hz > 0 ? shorttext(hz) : "none",
               hz > 0 ? shorttext(1 / hz) : ""});
    }
    b.endtable();
    for (int m = 1; m <= std::min(pictures, int(list.size())); ++m) {
        scene s;
        s.caption = "Mode shape " + numbertext(m) + ", " + frequencytext(list[std::size_t(m) - 1]);
        s.combination = m;
        s.mode = true;
        bookpicture(b, s);
    }
}
