// SPDX-License-Identifier: GPL-3.0-or-later
// Edges that plates and shells share.
#include "solver/elements/edges.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <span>

#include "solver/base/parallel.h"
#include "solver/elements/bending.h"
#include "solver/elements/catalogue.h"
#include "solver/elements/edgebits.h"
#include "solver/elements/edgebow.h"
#include "solver/elements/edgecurves.h"
#include "solver/elements/folds.h"
#include "solver/elements/nodenormals.h"
#include "solver/elements/supports.h"

namespace {
struct side {
    int far, element, edge;  // far: the node with the higher number
};
}  // namespace

// The sides of bent elements whose node with the lower number this is.
static void listsides(const model& m, const cornerlist& corners, int node,
                      std::vector<side>& sides) {
    sides.clear();
    for (const corner& one : corners.of(std::size_t(node))) {
        const elementdef& def = m.elements[std::size_t(one.element)];
        if (!bends(def.type)) continue;
        const int count = factsof(def.type).nodes, before = (one.at + count - 1) % count;
        const int to = def.node[(one.at + 1) % count], from = def.node[before];
        if (to > node) sides.push_back({to, one.element, one.at});
        if (from > node) sides.push_back({from, one.element, before});
    }
}

// Calls use(n, one, here) for each side: n is its node with the lower number, here are all that
// this has. By all threads.
static void eachside(const model& m, const cornerlist& corners, auto use) {
    parallelpieces(m.nnodes(), 4096, [&](int first, int last, int) {
        std::vector<side> here;
        for (int n = first + 1; n <= last; ++n) {
            listsides(m, corners, n, here);
            for (const side& one : here) use(std::size_t(n), one, std::span<const side>(here));
        }
    });
}

// --- folds --------------------------------------------------------------------------------------

// others: those at the same edge, with one among them. A surface ends where another meets it.
static int neighbourat(const model& m, const side& one, std::span<const side> others,
                       char mirrors) {
    int found = 0, count = 0;
    for (const side& other : others) {
        if (other.far != one.far || other.element == one.element) continue;
        if (!isshell(m.elements[std::size_t(other.element)].type)) continue;
        found = other.element;
        ++count;
    }
    for (int k = 0; k < 3 && count == 0; ++k)
        if ((mirrors >> k & 1) != 0) found = -1 - k;
    return count > 1 ? 0 : found;
}

// The least part that the shells which go on over an edge follow of the rotations there.
static void sharefollowed(model& m, const settings& s, const cornerlist& corners) {
    std::vector<float> own(m.elements.size(), 1);
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (int e = first + 1; e <= last; ++e) {
            if (!isshell(m.elements[std::size_t(e)].type)) continue;
            const element one = elementat(m, s, e);
            own[std::size_t(e)] = float(followedpart(one, flatten(one, meanaxes(one))));
        }
    });
    eachside(m, corners, [&](std::size_t, const side& one, std::span<const side> here) {
        const elementdef& e = m.elements[std::size_t(one.element)];
        if (!isshell(e.type)) return;
        const vec3 normal = normalof(m, e);
        float& least = m.fold[std::size_t(one.element)].followed[one.edge];
        for (const side& other : here) {
            const elementdef& there = m.elements[std::size_t(other.element)];
            if (other.far == one.far && isshell(there.type) &&
                continues(normal, normalof(m, there)))
                least = std::min(least, own[std::size_t(other.element)]);
        }
    });
}

static void foldshells(model& m, const settings& s, const cornerlist& corners,
                       const supportbits& held) {
    const double flat = 1e-6;  // radians: no surface turns by less
    if (std::ranges::all_of(m.curve, [&](double turned) { return turned < flat; })) return;
    std::vector<edgeneighbours> neighbours(m.elements.size(), edgeneighbours{});
    eachside(m, corners, [&](std::size_t n, const side& one, std::span<const side> here) {
        if (isshell(m.elements[std::size_t(one.element)].type))
            neighbours[std::size_t(one.element)][std::size_t(one.edge)] = neighbourat(
                m, one, here, mirrorsof(held[n]) & mirrorsof(held[std::size_t(one.far)]));
    });
    measurefolds(m, s, std::move(neighbours));
    sharenormals(m, s, corners, held);
    lookopposite(m, s, corners);
    sharefollowed(m, s, corners);
}

// --- free edges ---------------------------------------------------------------------------------

static const int onbar = 8, inplane = 16;

// The least that plates and shells resist bending by, a moment.
static double leastrigidity(const model& m) {
    double least = HUGE_VAL;
    for (const elementdef& e : m.elements) {
        if (!bends(e.type)) continue;
        const groupdata& g = m.groups[std::size_t(e.group)];
        least = std::min(least, g.field[fieldmodulus] * std::pow(g.field[fieldthickness], 3) / 12);
    }
    return least;
}

// Whether an element that is no plate resists rotations of its nodes; a spring that is softer than
// the plates does not count.
static bool sharesturns(const model& m, const elementdef& e, double rigidity) {
    if (e.type == typespring || e.type == typespringr || e.type == typespring2) {
        const auto turns = m.groups[std::size_t(e.group)].spring.bottomRightCorner<3, 3>();
        return turns.cwiseAbs().maxCoeff() > rigidity;
    }
    return e.type == typebeam || e.type == typepipe || e.type == typerigid;
}

// Rotations that supports hold, bits 0..2, nodes whose rotations bars or springs share, and clamped
// ones, which turn about the normal.
static std::vector<char> heldturns(const model& m, const supportbits& held) {
    std::vector<char> nodes(m.nodes.size(), 0);
    for (std::size_t n = 1; n < nodes.size(); ++n) nodes[n] = char((held[n] & allturns) >> 3);
    for (const clampednode& c : m.clamped) nodes[std::size_t(c.node)] |= char(inplane);
    const double rigidity = leastrigidity(m);
    for (const elementdef& e : m.elements)
        if (sharesturns(m, e, rigidity))
            for (int k = 0; k < factsof(e.type).nodes; ++k)
                nodes[std::size_t(e.node[k])] |= char(onbar);
    return nodes;
}

// both: what holds the turns of either end of an element's edge, which has no other element. A
// rotation about the normal bends nothing.
static bool isfree(const model& m, const elementdef& e, int both) {
    if ((both & ~inplane) == 0) return true;
    const vec3 normal = normalof(m, e);
    bool free = (both & onbar) == 0;
    for (int k = 0; k < 3; ++k) free &= !(both >> k & 1) || normal[k] * normal[k] > 0.5;
    return free;
}

// --- straight edges -----------------------------------------------------------------------------

// ways, turns: what is held at both ends of a shell's edge, which has no other shell. Supports take
// what pulls across it but leave its ends free to turn in the plane, as they do where it is
// clamped.
static bool isheldstraight(const model& m, const side& one, int ways, int turns) {
    if (ways == 0) return false;
    const elementdef& e = m.elements[std::size_t(one.element)];
    const int next = (one.edge + 1) % factsof(e.type).nodes;
    const vec3 normal = normalof(m, e).normalized(),
               along = m.nodes[std::size_t(e.node[next])] - m.nodes[std::size_t(e.node[one.edge])],
               across = normal.cross(along).normalized();
    double gives = 0, turned = 0;
    for (int k = 0; k < 3; ++k) {
        if (!(ways >> k & 1)) gives += across[k] * across[k];
        if (turns >> k & 1) turned += normal[k] * normal[k];
    }
    const double little = 0.01;  // of the square of a unit vector
    return gives < little && (turned < 0.5 || (turns & inplane) != 0);
}

// By node: whether one element alone has it.
static std::vector<char> lonenodes(const model& m) {
    std::vector<char> count(m.nodes.size(), 0);
    for (const elementdef& e : m.elements) {
        const int nodes = factsof(e.type).nodes;
        for (int k = 0; k < nodes && nodes > 1; ++k) {
            char& here = count[std::size_t(e.node[k])];
            here = char(std::min(here + 1, 2));
        }
    }
    for (char& here : count) here = here == 1;
    return count;
}

// An edge's value and its bits in the bytes of its element, which several threads may write.
static void storeedge(edgeslip& slip, int edge, double shear, bool straight, bool meets, bool free,
                      bool rim) {
    slip.shear[edge] = float(shear);
    const auto mark = [&](std::uint8_t& bits, bool set) {
        if (set) std::atomic_ref(bits).fetch_or(std::uint8_t(1 << edge));
    };
    mark(slip.straight, straight);
    mark(slip.meeting, meets);
    mark(slip.free, free);
    mark(slip.rim, rim);
}

// others: those at the same edge, with one among them; ways, turns: held at both ends; lone: no
// other element has either end.
static void shareedge(model& m, const side& one, std::span<const side> others,
                      const std::vector<edgeslip>& own, int ways, int turns, bool lone) {
    double sum = 0;
    int count = 0, shells = 0;
    bool quadrilateral = false;
    for (const side& other : others) {
        if (other.far != one.far) continue;
        shells += isshell(m.elements[std::size_t(other.element)].type);
        sum += double(own[std::size_t(other.element)].shear[other.edge]);
        ++count;
        quadrilateral |= m.elements[std::size_t(other.element)].type == typeshell4;
    }
    const elementdef& e = m.elements[std::size_t(one.element)];
    const bool held = count == 1 && isshell(e.type) && isheldstraight(m, one, ways, turns);
    storeedge(m.slip[std::size_t(one.element)], one.edge, sum / count,
              held || (lone && e.type == typeshell4), quadrilateral && e.type == typeshell3,
              count == 1 && isfree(m, e, turns), isshell(e.type) && shells == 1);
}

void measureedges(model& m, const settings& s, const cornerlist& corners) {
    m.slip.clear();
    m.fold.clear();
    if (std::none_of(m.elements.begin(), m.elements.end(),
                     [](const elementdef& e) { return bends(e.type); }))
        return;
    std::vector<edgeslip> own(m.elements.size(), edgeslip{});
    parallelpieces(m.nelems(), 4096, [&](int first, int last, int) {
        for (int e = first + 1; e <= last; ++e)
            if (bends(m.elements[std::size_t(e)].type))
                own[std::size_t(e)] = slipofedges(elementat(m, s, e));
    });
    const supportbits held = supportsof(m);
    foldshells(m, s, corners, held);
    const std::vector<char> turns = heldturns(m, held), lone = lonenodes(m);
    m.slip = own;
    eachside(m, corners, [&](std::size_t n, const side& one, std::span<const side> here) {
        shareedge(m, one, here, own, held[n] & held[std::size_t(one.far)] & allways,
                  turns[n] & turns[std::size_t(one.far)], lone[n] && lone[std::size_t(one.far)]);
    });
}
