// SPDX-License-Identifier: GPL-3.0-or-later
// Findings on groups, supports, loads and load cases.
#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/views.h"
#include "tools/elementshape.h"
#include "tools/findings.h"

// --- groups -------------------------------------------------------------------------------------

static bool hasspring(int g, int type) {
    const int first = type == typespringr ? 4 : 1, last = type == typespringt ? 3 : 6;
    for (int i = first; i <= last; ++i)
        for (int j = first; j <= last; ++j)
            if (groupmat(g, i, j) != 0) return true;
    return false;
}

// A beam bends about the axes that the analysis has; a tube needs one second moment.
static std::string missinginertia(int g, int type) {
    const double i2 = groups(g, fieldixx), i3 = groups(g, fieldiyy);
    if (type == typepipe) return i2 + i3 > 0 ? "" : "I xx";
    if (dim2d) {
        const double angle = toradians(groups(g, fieldrotation));
        const double c = std::cos(angle), s = std::sin(angle), nothing = 1e-12;
        return i3 * c * c + i2 * s * s > nothing * (i2 + i3) ? "" : "I yy or I xx";
    }
    return !(i2 > 0) ? "I xx" : !(i3 > 0) ? "I yy" : !(groups(g, fieldizz) > 0) ? "I zz" : "";
}

std::string lackofgroup(int g, int type) {
    const bool isspring = type == typespring2 || (type >= typespringt && type <= typespring);
    if (isspring) return hasspring(g, type) ? "" : "stiffness in its spring matrix";
    if (type == typerigid) return "";
    if (type == typemass) {
        const bool any = groups(g, fielddensity) > 0 || groups(g, fieldixx) > 0 ||
                         groups(g, fieldiyy) > 0 || groups(g, fieldizz) > 0;
        return any ? "" : "mass and inertia";
    }
    const bool isline = nodesoftype(float(type)) == 2;
    if (!(groups(g, fieldmodulus) > 0)) return "E modulus";
    if (!(groups(g, fieldthickness) > 0)) return isline ? "area" : "thickness";
    if (!(std::fabs(groups(g, fieldpoisson)) < 1)) return "Poisson ratio between -1 and 0.5";
    if (groups(g, fieldpoisson) > 0.5) return "Poisson ratio between -1 and 0.5";
    return type == typebeam || type == typepipe ? missinginertia(g, type) : "";
}

static void findgroupfaults(findinglist& list) {
    std::vector<int> groupless;
    // Elements of each group and type that the group does not serve.
    std::vector<std::array<std::vector<int>, maxelementtypes>> of(std::size_t(ngroups()) + 1);
    for (int e = 1; e <= nelems(); ++e) {
        if (nodesoftype(elems(e, 0)) == 0) continue;
        if (egroup(e) < 1 || egroup(e) > ngroups())
            groupless.push_back(e);
        else
            of[std::size_t(egroup(e))][std::size_t(elems(e, 0))].push_back(e);
    }
    list.add({"element without group", "elements without group",
              "their group does not exist; give them another", true},
             groupless.size(), [&](std::size_t i) {
                 return finding{
                     elementtext(groupless[i]) + ": group " + numbertext(egroup(groupless[i])),
                     false,
                     false,
                     {},
                     {groupless[i]}};
             });
    std::vector<finding> lacking;
    for (int g = 1; g <= ngroups(); ++g)
        for (int t = 1; t < maxelementtypes; ++t) {
            std::vector<int>& elements = of[std::size_t(g)][std::size_t(t)];
            const std::string lack = elements.empty() ? "" : lackofgroup(g, t);
            if (lack.empty()) continue;
            lacking.push_back({"Group \"" + groupname(g) + "\" has no " + lack + " for its " +
                                   numbertext(long(elements.size())) + " " + eltypname(t),
                               false,
                               false,
                               {},
                               std::move(elements)});
        }
    list.add({"group without properties", "groups without properties",
              "give them in Define, Element Group", true},
             lacking);
}

// --- parts --------------------------------------------------------------------------------------

namespace {

// Elements that hang together by their nodes.
class modelparts {
  public:
    modelparts() : parent(std::size_t(nnodes()) + 1) {
        std::iota(parent.begin(), parent.end(), 0);
        for (int e = 1; e <= nelems(); ++e) {
            if (!hascorners(e)) continue;
            used.push_back(e);
            for (int k = 2; k <= nodesoftype(elems(e, 0)); ++k)
                parent[std::size_t(find(int(elems(e, k))))] = find(int(elems(e, 1)));
        }
        std::ranges::sort(used, {}, [&](int e) { return std::pair(partof(e), e); });
        for (std::size_t i = 0; i < used.size();) {
            std::size_t end = i;
            while (end < used.size() && partof(used[end]) == partof(used[i])) ++end;
            parts.emplace_back(used.begin() + long(i), used.begin() + long(end));
            i = end;
        }
        std::ranges::stable_sort(parts, std::ranges::greater(), &std::vector<int>::size);
        number.assign(parent.size(), -1);
        for (std::size_t p = 0; p < parts.size(); ++p)
            number[std::size_t(partof(parts[p].front()))] = int(p);
    }
    int ofnode(int n) { return number[std::size_t(find(n))]; }  // -1 for a free node
    std::vector<std::vector<int>> parts;                        // elements, the largest part first

  private:
    int find(int n) {
        while (parent[std::size_t(n)] != n)
            n = parent[std::size_t(n)] = parent[std::size_t(parent[std::size_t(n)])];
        return n;
    }
    int partof(int e) { return find(int(elems(e, 1))); }
    std::vector<int> parent, used, number;
};

// The rigid motions of a part that its supports stop: each support is a row, its direction and its
// moment about the first supported node, made orthogonal to those before.
struct stopped {
    using row = std::array<double, 6>;
    std::vector<row> rows;
    point3 origin{};
    bool any = false;
    double size = 1;

    void support(int n, int dof) {
        const point3 at = placeofnode(n);
        if (!any) origin = at;
        any = true;
        point3 direction{};
        direction[std::size_t(dof - 1) % 3] = 1;
        row r{};
        const point3 arm = (1 / size) * (at - origin);
        const point3 moment = dof <= 3 ? cross(arm, direction) : direction;
        for (std::size_t k = 0; k < 3; ++k) {
            r[k] = dof <= 3 ? direction[k] : 0;
            r[k + 3] = moment[k];
        }
        add(r);
    }
    void add(row r) {
        const double nothing = 1e-6;
        for (const row& before : rows) {
            const double share = std::inner_product(r.begin(), r.end(), before.begin(), 0.0);
            for (std::size_t k = 0; k < 6; ++k) r[k] -= share * before[k];
        }
        const double length = std::sqrt(std::inner_product(r.begin(), r.end(), r.begin(), 0.0));
        if (!(length > nothing)) return;
        for (double& x : r) x /= length;
        rows.push_back(r);
    }
};

}  // namespace

// In 2-D the plane x y alone moves.
static bool isdofinuse(int dof) {
    return dof >= 1 && dof <= 6 && (!dim2d || dof <= 2 || dof == 6);
}

static bool isnode(long n) {
    return n >= 1 && n <= nnodes();
}

static double extentof() {
    double least = 0, most = 0;
    for (int n = 1; n <= nnodes(); ++n)
        for (int k = 0; k < 3; ++k) {
            const double x = nodes(0, n, k);
            if (!std::isfinite(x)) continue;
            least = std::min(least, x);
            most = std::max(most, x);
        }
    return most > least ? most - least : 1;
}

static std::vector<stopped> supportsof(modelparts& model) {
    std::vector<stopped> held(model.parts.size());
    const double size = extentof();
    for (stopped& s : held) s.size = size;
    const auto support = [&](int n, int dof) {
        const int p = isnode(n) ? model.ofnode(n) : -1;
        if (p >= 0 && isdofinuse(dof)) held[std::size_t(p)].support(n, dof);
    };
    for (int i = 1; i <= ncon; ++i) support(connode(i), condof(i));
    for (int e = 1; e <= nelems(); ++e) {
        const int type = int(elems(e, 0)), g = egroup(e);
        if (type < typespringt || type > typespring || g < 1 || g > ngroups()) continue;
        const int first = type == typespringr ? 4 : 1, last = type == typespringt ? 3 : 6;
        for (int dof = first; dof <= last && hascorners(e); ++dof)
            if (groupmat(g, dof, dof) > 0) support(int(elems(e, 1)), dof);
    }
    return held;
}

// Trusses, membranes and plates leave directions without stiffness, which the solver holds by
// itself: of parts of these alone it can not be told here what is free.
static bool isstiff(const std::vector<int>& part) {
    return std::ranges::any_of(part, [](int e) {
        const int type = int(elems(e, 0));
        const bool flat = type == typememb3 || type == typememb4 || type == typeshear4;
        return (type >= typebeam && type <= typeshell4) || (dim2d && flat);
    });
}

static std::string parttext(const std::vector<int>& part) {
    return "Part of " + numbertext(long(part.size())) + " element(s) with element " +
           numbertext(part.front());
}

// All in the plane x y, and analysed in space all the same.
static bool isflat() {
    for (int n = 1; n <= nnodes() && !dim2d; ++n)
        if (nodes(0, n, 2) != 0) return false;
    return !dim2d;
}

static void findpartfaults(findinglist& list) {
    modelparts model;
    const auto part = [&](std::size_t p) {
        return finding{parttext(model.parts[p]), false, false, {}, model.parts[p]};
    };
    list.add({"part not joined to the rest", "parts not joined to the rest",
              "no node is common with the largest part; merge nodes or connect them"},
             model.parts.empty() ? 0 : model.parts.size() - 1,
             [&](std::size_t i) { return part(i + 1); });
    const std::vector<stopped> held = supportsof(model);
    if (held.empty()) return;
    if (std::ranges::none_of(held, &stopped::any)) {
        list.lines.push_back(
            {"No supports: the model is held nowhere; add constraints to nodes", true, true});
        return;
    }
    std::vector<finding> loose;
    const std::size_t motions = dim2d ? 3 : 6;
    for (std::size_t p = 0; p < held.size(); ++p) {
        if (held[p].any && (held[p].rows.size() >= motions || !isstiff(model.parts[p]))) continue;
        loose.push_back(part(p));
        loose.back().text += held[p].any ? ": " + numbertext(long(motions - held[p].rows.size())) +
                                               " of its rigid motions are free"
                                         : " has no support";
    }
    list.add({"part that can move", "parts that can move",
              isflat() ? "their supports do not hold them in space; add constraints, or choose the "
                         "2-D analysis in Analyse, Options"
                       : "their supports do not hold them; add constraints",
              true},
             loose);
}

// --- constraints and loads ----------------------------------------------------------------------

static std::string casetext(int lc) {
    return "load case \"" + lcname(lc) + "\"";
}

// Rows of constraints and loads that stand on nothing: what they name does not exist, or is a node
// that no element uses.
static void findstray(findinglist& list) {
    std::vector<bool> used(std::size_t(nnodes()) + 1, false);
    for (int e = 1; e <= nelems(); ++e)
        for (int k = 1; hascorners(e) && k <= nodesoftype(elems(e, 0)); ++k)
            used[std::size_t(elems(e, k))] = true;
    std::vector<finding> missing, unused;
    const auto look = [&](const std::string& what, long n) {
        if (n == 0) return;  // a hole
        if (!isnode(n))
            missing.push_back({what + " is on node " + numbertext(n)});
        else if (!used[std::size_t(n)])
            unused.push_back({what + " is on node " + numbertext(n), false, false, {int(n)}, {}});
    };
    for (int i = 1; i <= ncon; ++i) look("Constraint " + numbertext(i), connode(i));
    for (int lc = 1; lc <= nlc(); ++lc) {
        for (int i = 1; i <= loadnode(lc, 0); ++i)
            look("Load " + numbertext(i) + " of " + casetext(lc), loadnode(lc, i));
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i) {
            const float e = elemload(lc, i, 0);
            if (e == 0 || (e >= 1 && e <= float(nelems()) && elems(long(e), 0) != 0)) continue;
            missing.push_back({"Element load " + numbertext(i) + " of " + casetext(lc) +
                               " is on element " + numbertext(e)});
        }
    }
    list.add({"constraint or load on what does not exist",
              "constraints and loads on what does not exist",
              "delete the rows in the Numerical Interface", true},
             missing);
    list.add({"constraint or load on a free node", "constraints and loads on free nodes",
              "no element takes them; they have no effect"},
             unused);
}

// --- load cases ---------------------------------------------------------------------------------

bool iscaseempty(int lc) {
    const auto parameter = [lc](int k) { return lcpar(lc, k); };
    switch (lctype(lc)) {
        case caseapplied: {
            bool prescribed = false;
            for (int i = 1; i <= ncon; ++i) prescribed = prescribed || conval(i) != 0;
            return loadnode(lc, 0) == 0 && elemload(lc, 0, 0) == 0 && !prescribed;
        }
        case casewave:
            return parameter(waveheight) == 0;
        case casewind:
            return parameter(windspeed) == 0;
        case casebuoyancy:
            return parameter(buoyancydensity) == 0;
        default:  // acts on masses: nodal rows, and those of the elements where they join
            return parameter(accvalue) == 0 ||
                   (loadnode(lc, 0) == 0 && parameter(accelementmass) == 0);
    }
}

static void findcasefaults(findinglist& list) {
    std::vector<finding> empty;
    for (int lc = 1; lc <= nlc(); ++lc)
        if (iscaseempty(lc)) empty.push_back({"L" + casetext(lc).substr(1)});
    list.add({"load case without loads", "load cases without loads",
              "its results are zero; give it loads or delete it"},
             empty);
}

static void findheights(findinglist& list) {
    if (!dim2d) return;
    std::vector<int> raised;
    for (int n = 1; n <= nnodes(); ++n)
        if (nodes(0, n, 2) != 0 && std::isfinite(nodes(0, n, 2))) raised.push_back(n);
    list.add({"node out of the plane", "nodes out of the plane",
              "the analysis is 2-D and does not use z; put z to 0, or analyse in 3-D"},
             raised.size(), [&](std::size_t i) {
                 return finding{nodetext(raised[i]) + ": z = " + numbertext(nodes(0, raised[i], 2)),
                                false,
                                false,
                                {raised[i]},
                                {}};
             });
}

void findjobfaults(findinglist& list) {
    findgroupfaults(list);
    tellcheckprogress(0.8);
    findpartfaults(list);
    tellcheckprogress(0.9);
    findstray(list);
    findcasefaults(list);
    findheights(list);
}
