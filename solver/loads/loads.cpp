// SPDX-License-Identifier: GPL-3.0-or-later
// Loads of a case.
#include "solver/loads/loads.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

#include "solver/base/parallel.h"
#include "solver/base/refuse.h"
#include "solver/elements/gauss.h"
#include "solver/elements/section.h"
#include "solver/elements/surface.h"
#include "solver/processes/ranks.h"

void absentloads::add(int n, int direction, double value) {
    if (value == 0) return;
    ++count;
    const bool turns = direction > 3, nothingyet = dof == 0 || (dof > 3 && !turns);
    const double size = std::fabs(value);
    const bool less = size < largest || (size == largest && n >= node);
    if (!nothingyet && (less || turns != (dof > 3))) return;
    largest = size;
    node = n;
    dof = direction;
}

void absentloads::addothers() {
    double all = double(count);
    allranks().sum(&all, 1);
    const double kind = count == 0 ? 0 : dof > 3 ? 1 : 2;
    const std::vector<double> most =
        allranks().greatest({kind, largest, -double(node), double(dof)});
    *this = {long(all), int(-most[2]), int(most[3]), most[1]};
}

void checkacceleration(const model& m, int lc, runlog& log) {
    const loadcase& c = m.cases[std::size_t(lc)];
    if (c.type < caseaccx || c.type > caseaccrz) return;
    const std::string name = "Load case " + std::to_string(lc) + " \"" + c.name + "\"";
    const double elements = c.par[accelementmass];
    if (elements != 0 && elements != 1)
        refuse(name + " has " + shortnumber(elements) +
               " where its masses of elements are off (0) or on (1); give it Element Mass ON or "
               "OFF again");
    double below = 0, first = -INFINITY;  // the lowest node, less than 0
    for (const nodalrow& row : c.nodal) {
        if (row.value >= 0 || !iscounted(m, row.node)) continue;
        ++below;
        first = std::max(first, -double(m.nameofnode(row.node)));
    }
    allranks().sum(&below, 1);
    allranks().most(&first, 1);
    if (below == 0) return;
    log.warn(name + ": " + std::to_string(long(below)) +
                 " nodal mass(es) are below 0, the first at node " + std::to_string(int(-first)) +
                 "; what they load goes the other way. Forces belong into a case of applied loads",
             lc);
}

caseloads::caseloads(const model& whole, const settings& set, int lc)
    : caseloads(whole, set, whole.cases[std::size_t(lc)], lc, inertia::spread) {}

caseloads::caseloads(const model& whole, const settings& set, const loadcase& one, int lc,
                     inertia of)
    : m(whole), s(set), c(one), number(lc), masses(of), sea(whole, set, one) {
    uniform = rotation = centre = vec3::Zero();
    accelerated = c.type >= caseaccx && c.type <= caseaccrz;
    if (accelerated) {
        const double units = s.mass / s.force;
        const int axis = (c.type - caseaccx) % 3;
        if (c.type <= caseaccz) {
            uniform[axis] = c.par[accvalue] * units;
        } else {
            rotation[axis] = c.par[accvalue] * s.length * units;
            centre = vec3(c.par[acccentrex], c.par[acccentrey], c.par[acccentrez]);
        }
    }
    rows = c.element;
    std::stable_sort(rows.begin(), rows.end(), [](const elementrow& a, const elementrow& b) {
        return a.element < b.element;
    });
}

bool caseloads::loadselements() const {
    return !rows.empty() || sea.any() || (accelerated && c.par[accelementmass] == 1);
}

vec3 caseloads::accelerationat(const vec3& at) const {
    return uniform + rotation.cross(at - centre);
}

// Adds a force a length that is the same all along a line.
static void spreadalong(const element& e, const vec3& load, elvector& f) {
    const int points = 2;  // exact for the cubic shapes of a beam
    placedforce forces[points];
    const double half = lengthof(e) / 2;
    for (int i = 0; i < points; ++i) {
        const gausspoint& g = gausspoints(points)[i];
        forces[i] = {{(1 + g.at) / 2, 0}, g.weight * half * load};
    }
    kindof(e.type).spread(e, placedforces(forces), f);
}

vec3 plateload(const element& e, const elementrow& row, const vec3& normal) {
    const int across = 3;
    if (row.direction == across) return row.value * normal;
    return row.value * normal.norm() * plateaxes(e).row(row.direction - 1).transpose();
}

// Adds a force an area that is the same all over a plate.
static void spreadover(const element& e, const elementrow& row, elvector& f) {
    const int most = 9;  // points of the rule
    placedforce forces[most];
    std::size_t count = 0;
    for (const surfacepoint& p : surfacepoints(e.nodes, 5)) {
        const vec3 normal = surfacenormal(e, shapesat(e.nodes, p.place));
        forces[count++] = {p.place, p.weight * plateload(e, row, normal)};
    }
    kindof(e.type).spread(e, {forces, count}, f);
}

template <typename Part>
static bool samepart(const Part* a, const Part* b) {
    return a == b || (a != nullptr && b != nullptr && *a == *b);
}

// To the last bit, as neighbours in a regular mesh are.
static bool arealike(const element& a, const element& b) {
    return a.type == b.type && a.g == b.g && a.turn == b.turn && a.curve == b.curve &&
           a.shear == b.shear && a.twod == b.twod && std::equal(a.x, a.x + a.nodes, b.x) &&
           samepart(a.slip, b.slip) && samepart(a.fold, b.fold);
}

void unitloads::take(const element& of) {
    element next = of;
    for (int k = 0; k < of.nodes; ++k) next.x[k] -= of.x[0];
    if (!arealike(next, e))
        for (elvector& f : found) f.resize(0);
    e = next;
}

const elvector& unitloads::along(int direction) {
    elvector& f = found[direction - 1];
    if (f.size() > 0) return f;
    f.setZero(e.nodes * kindof(e.type).nodedofs);
    if (kindof(e.type).fam == family::plate)
        spreadover(e, {e.number, direction, 1}, f);
    else
        spreadalong(e, lineaxes(e).row(direction - 1).transpose(), f);
    return f;
}

std::vector<elementrow>::const_iterator caseloads::firstrow(int e) const {
    const auto before = [](const elementrow& row, int number) { return row.element < number; };
    return std::lower_bound(rows.begin(), rows.end(), e, before);
}

bool caseloads::rowsonelement(const element& e, unitloads& unit, elvector& f) const {
    bool any = false;
    for (auto row = firstrow(e.number); row != rows.end() && row->element == e.number; ++row) {
        const elementkind& kind = kindof(e.type);
        if (kind.spread == nullptr)
            refuseelement(e, "has a distributed load in case \"" + c.name +
                                 "\", but this kind of element takes none; load its nodes");
        if (kind.fam != family::plate && !(lengthof(e) > 0))
            refuseelement(e, "has a distributed load, but no length");
        f += row->value * unit.along(row->direction);
        any = true;
    }
    return any;
}

// The mass of a quadrilateral is spread as its other loads are, so that a curved shell carries its
// weight by its membrane. The edges of triangles bow as their mass does, which does the same there.
void caseloads::weighplate(const element& e, elvector& f) const {
    const int most = 9;  // points of the rule
    placedforce forces[most];
    std::size_t count = 0;
    const double thickness = e.field(fieldthickness), mass = e.field(fielddensity) * thickness;
    for (const surfacepoint& p : surfacepoints(e.nodes, 5)) {
        const surfaceshape n = shapesat(e.nodes, p.place);
        const vec3 normal = surfacenormal(e, n), across = normal.normalized();
        const double weight = mass * p.weight * normal.norm();
        forces[count++] = {p.place, weight * accelerationat(surfaceat(e, n))};
        if (kindof(e.type).nodedofs != 6) continue;
        const vec3 turned =
            weight * thickness * thickness / 12 * (rotation - across * across.dot(rotation));
        for (int i = 0; i < e.nodes; ++i) f.segment<3>(6 * i + 3) += n.n[i] * turned;
    }
    kindof(e.type).spread(e, {forces, count}, f);
}

bool caseloads::massonelement(const element& e, elvector& f) const {
    const elementkind& kind = kindof(e.type);
    if (!accelerated || c.par[accelementmass] != 1 || kind.mass == nullptr) return false;
    if (masses == inertia::points && kind.fam != family::point) return false;
    if (masses == inertia::spread && kind.fam == family::plate && e.nodes == 4) {
        weighplate(e, f);
        return true;
    }
    elmatrix mass;
    kind.mass(e, mass);
    const int stride = int(mass.rows()) / e.nodes;
    elvector acceleration = elvector::Zero(mass.rows());
    for (int i = 0; i < e.nodes; ++i) {
        acceleration.segment<3>(stride * i) = accelerationat(e.x[i]);
        if (stride == 6) acceleration.segment<3>(stride * i + 3) = rotation;
    }
    f += mass * acceleration;
    return true;
}

bool caseloads::onelement(const element& e, unitloads& unit, elvector& f) const {
    const bool byrows = rowsonelement(e, unit, f);
    const bool bymass = massonelement(e, f);
    const bool bysea = sea.onelement(e, f);
    return byrows || bymass || bysea;
}

vec3 caseloads::online(const element& e, const linesink& sink) const {
    vec3 sum = vec3::Zero(), moment = vec3::Zero();
    const mat3 axes = lineaxes(e);
    for (auto row = firstrow(e.number); row != rows.end() && row->element == e.number; ++row)
        sum += row->value * axes.row(row->direction - 1).transpose();
    if (!sum.isZero(0)) sink(0, 1, [&](double) { return sum; });
    if (accelerated && c.par[accelementmass] == 1 && kindof(e.type).mass != nullptr &&
        masses != inertia::points) {
        const linesection section = sectionof(e);
        const double density = e.field(fielddensity);
        sink(0, 1, [&](double x) -> vec3 {
            return density * section.area * accelerationat((1 - x) * e.x[0] + x * e.x[1]);
        });
        if (kindof(e.type).nodedofs == 6)
            moment =
                density *
                vec3(section.i2 + section.i3, section.i2, section.i3).cwiseProduct(axes * rotation);
    }
    sea.online(e, sink);
    return moment;
}

// Of applied forces.
void caseloads::edgemoments(const shellrims& rims, const dofmap& d, double* f) const {
    if (c.type != caseapplied) return;
    rims.eachmoment(c.nodal, [&](int n, const vec3& moment) {
        for (int k = 0; k < 3; ++k)
            if (d.place[4 + k] >= 0) f[d.index(n, d.place[4 + k])] += moment[k];
    });
}

void caseloads::nodalforces(const dofmap& d, double* f, absentloads& absent) const {
    for (const nodalrow& row : c.nodal) {
        if (!d.nodes->counts(std::size_t(row.node - 1))) continue;
        double value = row.value;
        if (c.type != caseapplied) {
            if (!accelerated) continue;  // see tellidle
            const vec3 a = accelerationat(m.nodes[std::size_t(row.node)]);
            value *= row.dof <= 3 ? a[row.dof - 1] : rotation[row.dof - 4];
        }
        const int k = d.place[row.dof];
        if (k >= 0)
            f[d.index(row.node, k)] += value;
        else
            absent.add(m.nameofnode(row.node), row.dof, value);
    }
}

void caseloads::tellabsent(const absentloads& absent, runlog& log) const {
    if (absent.count == 0) return;
    log.warn("Case " + std::to_string(number) + " \"" + c.name +
                 "\": " + std::to_string(absent.count) +
                 " load(s) fall away, this analysis does not have their direction; the largest, " +
                 shortnumber(absent.largest) + ", at node " + std::to_string(absent.node) + " in " +
                 dofname(absent.dof),
             number);
}

// Masses do nothing in sea and wind, and rows that were meant as forces would be missed.
void caseloads::tellidle(runlog& log) const {
    if (!sea.any()) return;
    auto rows = double(
        std::ranges::count_if(c.nodal, [&](const nodalrow& r) { return iscounted(m, r.node); }));
    allranks().sum(&rows, 1);
    if (rows > 0)
        log.warn("Case " + std::to_string(number) + " \"" + c.name + "\": its " +
                     std::to_string(long(rows)) +
                     " nodal row(s) are masses, which neither waves, wind nor buoyancy load. Give "
                     "forces a case of their own",
                 number);
}

void caseloads::collect(const std::vector<caseloads>& cases, const dofmap& d, double* f,
                        runlog& log) {
    const auto dofs = std::size_t(d.dofs());
    std::fill_n(f, dofs * cases.size(), 0.0);
    std::vector<absentloads> absent(cases.size());
    const shellrims rims(cases[0].m, cases[0].s);
    for (std::size_t c = 0; c < cases.size(); ++c) {
        cases[c].nodalforces(d, f + c * dofs, absent[c]);
        cases[c].edgemoments(rims, d, f + c * dofs);
    }
    together([&] { addelementloads(cases, d, f, absent); });
    for (std::size_t c = 0; c < cases.size(); ++c) {
        sumshares(d, f + c * dofs);
        absent[c].addothers();
        cases[c].tellabsent(absent[c], log);
        cases[c].tellidle(log);
    }
}

namespace {
struct elementload {
    bool any = false;
    elvector f;
};
}  // namespace

static void addelementload(const model& m, const dofmap& d, const elementdef& def,
                           const elvector& load, double* f, absentloads& absent) {
    const elementdofs dofs = dofsof(d, def);
    const int stride = kindof(def.type).nodedofs;
    const double noload = 1e-9 * load.cwiseAbs().maxCoeff();
    for (int a = 0; a < dofs.count; ++a) {
        if (dofs.index[a] >= 0)
            f[dofs.index[a]] += load[a];
        else if (std::fabs(load[a]) > noload)
            absent.add(m.nameofnode(def.node[a / stride]), a % stride + 1, load[a]);
    }
}

// An element is looked at once for all cases; each case is summed in the order of the elements.
void caseloads::addelementloads(const std::vector<caseloads>& cases, const dofmap& d, double* f,
                                std::vector<absentloads>& absent) {
    std::vector<std::size_t> loaded;
    for (std::size_t c = 0; c < cases.size(); ++c)
        if (cases[c].loadselements()) loaded.push_back(c);
    if (loaded.empty()) return;
    const model& m = cases[0].m;
    const int count = int(loaded.size()), pieces = 32;
    const int batch = pieces * std::max(1, 256 / count);  // elements
    std::vector<elementload> loads(std::size_t(count) * std::size_t(batch));
    std::vector<unitloads> units{std::size_t(threads())};
    for (int begin = 1; begin <= m.nelems(); begin += batch) {
        const int some = std::min(batch, m.nelems() + 1 - begin);
        parallelpieces(some, batch / pieces, [&](int first, int last, int thread) {
            unitloads& unit = units[std::size_t(thread)];
            for (int i = first; i < last; ++i) {
                elementload* const at = loads.data() + std::size_t(i) * std::size_t(count);
                for (int k = 0; k < count; ++k) at[k].any = false;
                if (!isown(m, begin + i)) continue;
                const element e = elementat(m, cases[0].s, begin + i);
                unit.take(e);
                for (int k = 0; k < count; ++k) {
                    at[k].f.setZero(e.nodes * kindof(e.type).nodedofs);
                    at[k].any = cases[loaded[std::size_t(k)]].onelement(e, unit, at[k].f);
                }
            }
        });
        parallelpieces(count, 1, [&](int first, int last, int) {
            for (int k = first; k < last; ++k)
                for (int i = 0; i < some; ++i) {
                    const elementload& load =
                        loads[std::size_t(i) * std::size_t(count) + std::size_t(k)];
                    const std::size_t c = loaded[std::size_t(k)];
                    if (load.any)
                        addelementload(m, d, m.elements[std::size_t(begin + i)], load.f,
                                       f + c * std::size_t(d.dofs()), absent[c]);
                }
        });
    }
}
