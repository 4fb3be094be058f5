// SPDX-License-Identifier: GPL-3.0-or-later
// From what was read into the model: check, buffers, paste, and what goes with nodes and elements.
#include "exchange/gate.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "core/catalogue.h"
#include "core/keptmodel.h"
#include "core/model.h"
#include "core/modelitems.h"
#include "core/modelsize.h"
#include "core/newmodel.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "edit/merge.h"
#include "edit/move.h"
#include "exchange/drawn.h"
#include "exchange/importunits.h"
#include "exchange/orient.h"
#include "view/autoscale.h"
#include "view/moddraw.h"

// --- where everything will stand ----------------------------------------------------------------

namespace {
// Places of the items of `imported` in the model, by their numbers; entry 0 is 0.
struct places {
    std::vector<int> node, element, group, loadcase;
    int nodesbefore = 0, elementsbefore = 0;
    int newgroups = 0, newcases = 0;
    std::vector<bool> isnewgroup, isnewcase;
};
}  // namespace

// In the order of the file's numbers where it tells some; else as read. Returns the place of each.
static std::vector<int> orderedplaces(std::size_t count, const std::vector<long>& numbers,
                                      bool bynumber) {
    std::vector<int> place(count + 1);
    std::iota(place.begin(), place.end(), 0);
    if (!bynumber || numbers.size() != count || std::ranges::is_sorted(numbers)) return place;
    std::vector<int> order(count);
    std::iota(order.begin(), order.end(), 1);
    std::ranges::stable_sort(order, {}, [&](int i) { return numbers[std::size_t(i) - 1]; });
    for (std::size_t k = 0; k < count; ++k) place[std::size_t(order[k])] = int(k) + 1;
    return place;
}

static bool isnewmodel(purposes purpose) {
    return purpose == purposes::open;
}

static void placegroups(const imported& found, purposes purpose, places& at) {
    std::unordered_map<std::string, int> known;
    const int before = isnewmodel(purpose) ? 0 : ngroups();
    for (int g = 1; g <= before; ++g) known.try_emplace(groupname(g), g);
    at.group.assign(1, 0);
    at.isnewgroup.assign(1, false);
    for (const importedgroup& group : found.groups) {
        const auto [place, isnew] = known.try_emplace(group.name, before + at.newgroups + 1);
        at.newgroups += isnew;
        at.group.push_back(place->second);
        at.isnewgroup.push_back(isnew);
    }
}

// The only case of a new model, untouched, is taken by the first that comes.
static bool isfirstcasefree() {
    return nlc() == 1 && lctype(1) == caseapplied && loadnode(1, 0) == 0 && elemload(1, 0, 0) == 0;
}

static void placecases(const imported& found, purposes purpose, places& at) {
    const bool isfree = isnewmodel(purpose) || isfirstcasefree();
    const int before = isfree ? 0 : nlc();
    std::unordered_map<std::string, int> known;
    for (int lc = 1; lc <= before; ++lc)
        if (lctype(lc) == caseapplied) known.try_emplace(lcname(lc), lc);
    at.loadcase.assign(1, 0);
    at.isnewcase.assign(1, false);
    for (const importedcase& c : found.cases) {
        const auto same = known.find(c.name);
        const bool isold = same != known.end() && c.type == caseapplied && !c.name.empty();
        if (!isold) ++at.newcases;
        at.loadcase.push_back(isold ? same->second : before + at.newcases);
        at.isnewcase.push_back(!isold);
    }
}

static places placesof(const imported& found, purposes purpose) {
    places at;
    const bool isempty = isnewmodel(purpose) || (nnodes() == 0 && nelems() == 0);
    at.nodesbefore = isnewmodel(purpose) ? 0 : nnodes();
    at.elementsbefore = isnewmodel(purpose) ? 0 : nelems();
    at.node = orderedplaces(found.nodes.size(), found.nodenumbers, isempty);
    at.element = orderedplaces(found.elements.size(), found.elementnumbers, isempty);
    placegroups(found, purpose, at);
    placecases(found, purpose, at);
    return at;
}

// --- checks -------------------------------------------------------------------------------------

// Coordinates are kept as Singles; what they can not hold stays outside.
static bool tellunholdable(const imported& found) {
    const double most = std::numeric_limits<float>::max();
    for (const triple& node : found.nodes)
        for (const double v : node)
            if (!(std::fabs(v) <= most)) {
                theplatform().message("The file has a coordinate of " + numbertext(v) +
                                          ", which a model can not hold. Nothing was read.",
                                      icons::exclamation);
                return true;
            }
    return false;
}

static void noteneeds(const imported& found, purposes purpose, const places& at) {
    const bool isnew = isnewmodel(purpose);
    clearneeds();
    needsize(sizenodes, at.nodesbefore + long(found.nodes.size()));
    needsize(sizeelements, at.elementsbefore + long(found.elements.size()));
    needsize(sizegroups, (isnew ? 0 : ngroups()) + long(at.newgroups));
    needsize(sizegraphics, (isnew ? 0 : ngraphics()) + long(found.graphics.size()));
    needsize(sizeconditions, (isnew ? 0 : ncon) + long(found.constraints.size()));
    for (std::size_t c = 0; c < found.cases.size(); ++c) {
        const int lc = at.loadcase[c + 1];
        needsize(sizeloadcases, lc);
        const bool isold = !at.isnewcase[c + 1];
        needsize(sizeconditions, (isold ? loadnode(lc, 0) : 0) + long(found.cases[c].nodal.size()));
        needsize(sizeconditions,
                 (isold ? long(elemload(lc, 0, 0)) : 0) + long(found.cases[c].onelements.size()));
    }
}

// The declared sizes hold it, or the user has them enlarged.
static bool makeroom(const imported& found, purposes purpose, const places& at) {
    noteneeds(found, purpose, at);
    if (!istoolittle()) return true;
    if (menulock || !askenlarge() || !enlargewithmodel()) return false;
    writemodelsize();
    return true;
}

// --- into the model -----------------------------------------------------------------------------

static void fillbuffers(const imported& found, const places& at) {
    for (std::size_t i = 0; i < found.nodes.size(); ++i) {
        const auto row = tmpnodes.row(at.node[i + 1]);
        row[0] = float(at.node[i + 1]);
        for (std::size_t k = 0; k < 3; ++k) row[k + 1] = float(found.nodes[i][k]);
    }
    const int current = meshgroup >= 1 && meshgroup <= ngroups() ? meshgroup : 1;
    for (std::size_t i = 0; i < found.elements.size(); ++i) {
        const importedelement& e = found.elements[i];
        const int to = at.element[i + 1];
        const auto row = tmpelems.row(to);
        row[0] = float(e.type);
        for (std::size_t k = 0; k < 4; ++k) row[k + 1] = float(at.node[std::size_t(e.corners[k])]);
        row[5] = float(e.group == 0 ? current : at.group[std::size_t(e.group)]);
        tmprotpo(to) = e.rotation;
    }
    for (std::size_t g = 0; g < found.graphics.size(); ++g)
        for (long r = 0; r < 4; ++r)
            std::ranges::copy(found.graphics[g].rows[std::size_t(r)],
                              graphics2.row(long(g) + 1, r).begin());
    tmpnodes(0, 0) = float(found.nodes.size());
    tmpelems(0, 0) = float(found.elements.size());
    graphics2(0, 0, 0) = float(found.graphics.size());
}

static void putgroup(const importedgroup& group, int g) {
    defaultgroup(g);
    groupname(g) = group.name;
    for (int k = 1; k <= groupfields; ++k)
        if (const double v = group.fields[std::size_t(k)]; std::isfinite(v)) groups(g, k) = v;
    if (group.colour >= 0) groupcolor(g) = group.colour;
    for (std::size_t k = 0; k < group.matrix.size() && k < 36; ++k)
        groupmat(g, long(k) / 6 + 1, long(k) % 6 + 1) = group.matrix[k];
}

static void putgroups(const imported& found, const places& at, purposes purpose,
                      importreport& report) {
    if (found.groups.empty()) return;
    if (isnewmodel(purpose)) groups(0, 0) = 0;
    const int before = ngroups();
    if (before > 0)
        for (std::size_t g = 1; g < at.isnewgroup.size(); ++g)
            if (!at.isnewgroup[g])
                report.changed("Group " + found.groups[g - 1].name +
                               " is in the model; its properties stay as they were");
    appenditems(items::group, at.newgroups);
    for (std::size_t g = 1; g < at.group.size(); ++g)
        if (at.isnewgroup[g]) putgroup(found.groups[g - 1], at.group[g]);
}

static void putnames(const imported& found, const places& at, bool numbersgone) {
    for (std::size_t i = 0; i < found.nodenames.size(); ++i)
        nodename(at.nodesbefore + at.node[i + 1]) = found.nodenames[i];
    for (std::size_t i = 0; i < found.elementnames.size(); ++i)
        elemname(at.elementsbefore + at.element[i + 1]) = found.elementnames[i];
    if (!numbersgone || !found.nodenames.empty()) return;
    for (std::size_t i = 0; i < found.nodenumbers.size(); ++i)
        nodename(at.nodesbefore + at.node[i + 1]) = numbertext(found.nodenumbers[i]);
}

// Do nodes or elements stand under other numbers than those of the file?
static bool arenumbersother(const std::vector<long>& numbers, const std::vector<int>& place,
                            int before) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (numbers[i] != before + place[i + 1]) return true;
    return false;
}

namespace {
// Rows of one list by item and freedom, so that what comes twice finds the first.
class rowindex {
  public:
    // The place of the row, count + 1 for a new one.
    int find(int item, int dof, int count) {
        const auto [at, isnew] = rows.try_emplace(long(item) * 8 + dof, count + 1);
        return at->second;
    }

  private:
    std::unordered_map<long, int> rows;
};
}  // namespace

static void putconstraints(const imported& found, const places& at, importreport& report) {
    rowindex known;
    for (const importedrow& row : found.constraints) {
        const int n = at.nodesbefore + at.node[std::size_t(row.item)];
        const int i = known.find(n, row.dof, ncon);
        if (i > ncon)
            ncon = i;
        else if (conval(i) != float(row.value)) {
            report.changed("Constraints told twice with different values; the last one stands");
            report.about(reportitems::nodes, row.item);
        }
        connode(i) = n;
        condof(i) = row.dof;
        conval(i) = float(row.value);
    }
}

static void putcase(const importedcase& c, int lc) {
    lcname(lc) = c.name.empty() ? "LC " + std::to_string(lc) : c.name;
    defaultloadcase(lc);
    lctype(lc) = c.type;
    for (long k = 0; c.hasparameters && k < caseparameters; ++k)
        lcpar(lc, k) = c.parameters[std::size_t(k)];
}

// What comes twice for a node or element adds up.
static void putloads(const importedcase& c, int lc, const places& at) {
    rowindex nodal, element;
    for (const importedrow& row : c.nodal) {
        const int n = at.nodesbefore + at.node[std::size_t(row.item)];
        const int i = nodal.find(n, row.dof, loadnode(lc, 0));
        if (i > loadnode(lc, 0)) {
            loadnode(lc, 0) = i;
            loadval(lc, i) = 0;
        }
        loadnode(lc, i) = n;
        loaddof(lc, i) = row.dof;
        loadval(lc, i) += float(row.value);
    }
    for (const importedrow& row : c.onelements) {
        const int e = at.elementsbefore + at.element[std::size_t(row.item)];
        const int i = element.find(e, row.dof, int(elemload(lc, 0, 0)));
        if (i > int(elemload(lc, 0, 0))) {
            elemload(lc, 0, 0) = float(i);
            elemload(lc, i, 2) = 0;
        }
        elemload(lc, i, 0) = float(e);
        elemload(lc, i, 1) = float(row.dof);
        elemload(lc, i, 2) += float(row.value);
    }
}

static void putcases(const imported& found, const places& at) {
    for (std::size_t c = 0; c < found.cases.size(); ++c) {
        const int lc = at.loadcase[c + 1];
        loadnode(0, 0) = std::max(nlc(), lc);
        if (at.isnewcase[c + 1]) putcase(found.cases[c], lc);
        putloads(found.cases[c], lc, at);
    }
    elemload(0, 0, 0) = float(nlc());
}

// A combination for each case, so that each has its results.
static void putcombinations() {
    for (int lc = 1; lc <= std::min(nlc(), maxcombinations); ++lc) {
        lcomb(0, 0) = float(lc);
        lcomb(lc, lc) = 1;
        lcombname(lc) = lcname(lc);
    }
}

static void putreleases(const imported& found, const places& at) {
    for (const importedrelease& r : found.releases)
        endrelease(at.elementsbefore + at.element[std::size_t(r.element)], r.end, r.dof) = 1;
}

static void followplaces(importreport& report, const places& at) {
    for (reportline& line : report.lines())
        for (int& n : line.numbers) {
            const bool ofnodes = line.items == reportitems::nodes;
            const auto& place = ofnodes ? at.node : at.element;
            if (n >= 1 && std::size_t(n) < place.size())
                n = place[std::size_t(n)] + (ofnodes ? at.nodesbefore : at.elementsbefore);
        }
}

static void notemodelflags(const imported& found) {
    for (const importedelement& e : found.elements) {
        const int elnn = nodesoftype(float(e.type));
        if (elnn == 1) hasmass = true;
        if (elnn > 2) hasplates = true;
    }
}

// Where coordinates step wider than the merge tolerance, nodes that lie a few steps apart may have
// been meant as one: those that came are told.
static void tellsteps(importreport& report, int nodesbefore) {
    const std::string note = tolerancenote();
    if (note.empty()) return;
    const double few = 4;
    imported apart;
    pointjoiner joiner(apart, few * coordinatestep());
    std::vector<int> close;
    for (int n = 1; n <= nnodes(); ++n) {
        const triple at{nodes(0, n, 0), nodes(0, n, 1), nodes(0, n, 2)};
        const auto known = apart.nodes.size();
        const triple& met = apart.nodes[std::size_t(joiner.join(at)) - 1];
        if (n > nodesbefore && apart.nodes.size() == known && met != at) close.push_back(n);
    }
    if (close.empty()) return;
    report.warn(note);
    for (const int n : close) report.about(reportitems::nodes, n);
}

static bool letin(imported& found, purposes purpose, const places& at) {
    fillbuffers(found, at);
    if (!isnewmodel(purpose) || !found.groups.empty()) putgroups(found, at, purpose, found.report);
    if (!editpaste()) return false;
    const bool nodesgone = arenumbersother(found.nodenumbers, at.node, at.nodesbefore);
    putnames(found, at, nodesgone);
    if (nodesgone && found.nodenames.empty())
        found.report.changed("Nodes have new numbers; those of the file are their names");
    if (arenumbersother(found.elementnumbers, at.element, at.elementsbefore))
        found.report.changed("Elements have new numbers");
    putreleases(found, at);
    putconstraints(found, at, found.report);
    putcases(found, at);
    if (isnewmodel(purpose) && !found.cases.empty()) putcombinations();
    notemodelflags(found);
    followplaces(found.report, at);
    tellsteps(found.report, at.nodesbefore);
    return true;
}

// --- the two ways in ----------------------------------------------------------------------------

// The shortest edge that the merge tolerance would close up; 0 for none. In a mesh that numbers its
// nodes such an edge is a fine place, not a slip, unless it is as good as none.
static double closededge(const imported& found) {
    if (!automergenodes || found.nodenumbers.empty()) return 0;
    const double whole = mergetol * mergetol, noise = whole * 1e-6;
    double shortest = whole;  // squares: a root for each edge of a million would be felt
    for (const importedelement& e : found.elements) {
        const int count = nodesoftype(float(e.type));
        for (int c = 0; c < count; ++c) {
            const triple& a = found.nodes[std::size_t(e.corners[std::size_t(c)]) - 1];
            const int next = c + 1 == count ? 0 : c + 1;
            const triple& b = found.nodes[std::size_t(e.corners[std::size_t(next)]) - 1];
            const double x = b[0] - a[0], y = b[1] - a[1], z = b[2] - a[2];
            const double square = x * x + y * y + z * z;
            if (square > noise) shortest = std::min(shortest, square);
        }
    }
    return shortest < whole ? std::sqrt(shortest) : 0;
}

// Merges by their options, which a release of what was pasted begins; edges stay open.
static void releasepasted(importreport& report, double shortest) {
    const int before = nnodes(), elementsbefore = nelems();
    const double tolerance = mergetol;
    if (shortest > 0) {
        mergetol = shortest / 2;
        report.warn("The shortest edge, " + roughly(shortest) +
                    ", lies below the merge tolerance " + roughly(tolerance) +
                    "; nodes were merged within " + roughly(mergetol));
    }
    releaseselection();
    if (nnodes() < before)
        report.changed("Nodes merged within " + roughly(mergetol), before - nnodes());
    mergetol = tolerance;
    if (nelems() < elementsbefore)
        report.changed("Double elements merged", elementsbefore - nelems());
}

static reply admitasnew(imported& found, const std::string& path, const places& at) {
    keptmodel before;
    if (!resetmodel()) {
        before.restore();
        return reply::failed;
    }
    fitunits(found, true);
    if (!letin(found, purposes::open, at)) {
        before.restore();
        return reply::failed;
    }
    commenttext.clear();
    commentvisible = false;
    const double shortest = closededge(found);
    keepreport(std::move(found.report));
    found = {};  // all of it stands in the model now, and merges need room
    releasepasted(lastreport(), shortest);
    addready();
    noteforeign(path);
    fitall(true);  // what comes from elsewhere lies anywhere
    return reply::done;
}

static reply admitbehind(imported& found, const places& at) {
    const bool wasempty = nnodes() == 0 && ngraphics() == 0;
    if (const double shortest = closededge(found); shortest > 0)
        found.report.warn("The shortest edge, " + roughly(shortest) +
                          ", lies below the merge tolerance " + roughly(mergetol) +
                          ", which closes it up when the import is placed");
    if (!letin(found, purposes::import, at)) return reply::failed;
    if (wasempty) fitall(true);
    keepreport(std::move(found.report));
    return reply::done;
}

static void showreport() {
    if (!lastreport().isplain()) theplatform().showdialog("importreport");
}

// A file of solids or of texts alone; its report says why.
static bool tellnothing(imported& found, const std::string& path) {
    if (!found.nodes.empty() || !found.graphics.empty()) return false;
    theplatform().message(path + " holds nothing that has a place in a model. Nothing was changed.",
                          icons::exclamation);
    keepreport(std::move(found.report));
    showreport();
    return true;
}

reply admit(imported& found, const std::string& path, purposes purpose) {
    theplatform().endprogress();
    if (tellnothing(found, path)) return reply::failed;
    orientgroups(found);
    if (tellunholdable(found)) return reply::failed;
    const places at = placesof(found, purpose);
    if (!makeroom(found, purpose, at)) return reply::failed;
    if (!isnewmodel(purpose)) {
        fitunits(found, false);
        if (tellunholdable(found)) return reply::failed;
    }
    reply result = reply::failed;
    {
        const drawinghold hold;
        result = isnewmodel(purpose) ? admitasnew(found, path, at) : admitbehind(found, at);
    }
    redrawall();
    theplatform().refresh();
    if (result == reply::done) showreport();
    return result;
}

reply readforeign(const std::string& path, purposes purpose, const std::string& format,
                  const std::function<void(const std::string& path, imported& found)>& read) {
    const hourglass wait;
    imported found;
    found.report.file = path;
    found.report.format = format;
    reply result = reply::done;
    guarded([&] { read(path, found); },
            [&](const runtimeerror& e) {
                result = e.number == errstopped ? reply::cancelled : reply::failed;
                theplatform().endprogress();
                if (result == reply::failed)
                    theplatform().message(e.what + ".\nNothing was read.", icons::exclamation);
            });
    return result == reply::done ? admit(found, path, purpose) : result;
}

reply writeforeign(
    const std::string& path, const std::string& format,
    const std::function<void(const std::string& path, importreport& report)>& write) {
    const hourglass wait;
    importreport report;
    report.file = path;
    report.format = format;
    report.exporting = true;
    reply result = reply::done;
    guarded([&] { write(path, report); },
            [&](const runtimeerror& e) {
                result = e.number == errstopped ? reply::cancelled : reply::failed;
                if (result == reply::failed) theplatform().message(e.what, icons::exclamation);
            });
    theplatform().endprogress();
    if (result != reply::done) return result;
    keepreport(std::move(report));
    showreport();
    return result;
}
