// SPDX-License-Identifier: GPL-3.0-or-later
// The walk over the plates of a group.
#include "tools/checkmodel.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/numtext.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "view/drawelems.h"
#include "view/localaxes.h"

plateadjacency adjelems;
int maxadj = 0;
point3 refx{}, refy{}, refz{};
double checkangle = 0;

static int cornerof(int e, int k) {
    return int(elems(e, k));
}

bool isplate(int e) {
    const auto row = elems.row(e);
    const int count = nodesoftype(row[0]);
    if (count < 3) return false;
    const float most = float(nnodes());
    return std::all_of(row.begin() + 1, row.begin() + 1 + count,
                       [most](float n) { return n >= 1 && n <= most; });
}

int edgesense(int e, int a, int b) {
    const int count = nodesoftype(elems(e, 0));
    for (int k = 1; k <= count; ++k) {
        const int from = cornerof(e, k), to = cornerof(e, k % count + 1);
        if (from == a && to == b) return 1;
        if (from == b && to == a) return -1;
    }
    return 0;
}

// --- plates at nodes ----------------------------------------------------------------------------

void plateadjacency::build() {
    std::vector<int> plates, ordered;
    nodes = nnodes();
    elements = nelems();
    groups = ngroups();
    for (int e = 1; e <= elements; ++e)
        if (egroup(e) >= 1 && egroup(e) <= groups && isplate(e)) plates.push_back(e);
    bygroup.build(std::size_t(groups) + 1, plates,
                  [&](std::size_t i, auto work) { work(std::size_t(egroup(plates[i]))); });
    for (int g = 1; g <= groups; ++g) ordered.insert(ordered.end(), of(g).begin(), of(g).end());
    bynode.build(std::size_t(nodes) + 1, ordered, [&](std::size_t i, auto work) {
        const auto row = elems.row(ordered[i]);
        const auto first = row.begin() + 1, last = first + nodesoftype(row[0]);
        for (auto n = first; n != last; ++n)
            if (std::find(first, n, *n) == n) work(std::size_t(*n));  // a node may stand twice
    });
}

std::span<const int> plateadjacency::operator()(int group, int n) const {
    const auto list = at(n);
    const auto first = std::lower_bound(list.begin(), list.end(), group,
                                        [](int e, int g) { return egroup(e) < g; });
    const auto last =
        std::upper_bound(first, list.end(), group, [](int g, int e) { return g < egroup(e); });
    return {first, last};
}

// Calls visit(group, node, plates of the group there) for all nodes.
template <typename Visit>
static void eachnodegroup(Visit visit) {
    for (int n = 1; n <= adjelems.nodes; ++n) {
        const auto list = adjelems.at(n);
        for (std::size_t i = 0; i < list.size();) {
            std::size_t end = i;
            while (end < list.size() && egroup(list[end]) == egroup(list[i])) ++end;
            visit(egroup(list[i]), n, list.subspan(i, end - i));
            i = end;
        }
    }
}

static void getadjelems() {
    adjelems.build();
    maxadj = 0;
    eachnodegroup(
        [](int, int, std::span<const int> list) { maxadj = std::max(maxadj, int(list.size())); });
}

// --- a single element ---------------------------------------------------------------------------

static const double straight = 0.8;  // cosine between plates that continue each other

static turningelements* keeper = nullptr;  // of the loads, while several elements change
static int changedorders = 0;              // elements mirrored so far

// The loads on all elements that change while it lives follow at its end.
namespace {
class keptloads {
  public:
    keptloads() { keeper = &turning; }
    ~keptloads() { keeper = nullptr; }
    keptloads(const keptloads&) = delete;
    keptloads& operator=(const keptloads&) = delete;
    int settle() { return turning.settle(); }

  private:
    turningelements turning;
};
}  // namespace

template <typename Change>
static void changeorder(int e, Change change) {
    turningelements alone;
    turningelements& turning = keeper != nullptr ? *keeper : alone;
    turning.keep(e);
    change();
    ++changedorders;
    if (keeper == nullptr) alone.settle();
}

void mirroraxis(int e) {
    changeorder(e, [e] { reversenodes(e); });
}

void rotateaxis(int e, bool three) {
    changeorder(e, [e, three] {
        for (int i = 0; i < (three ? 3 : 1); ++i) rotatenodes(e);
    });
}

static point3 vectorof(const double* v) {
    return {v[0], v[1], v[2]};
}

// The axes as they are drawn, into localx, localy, localz.
static void evaluate(int e) {
    axesonly = True;
    drawlocalaxes(e, activeview);
    axesonly = False;
}

static void takereference() {
    refx = vectorof(localx);
    refy = vectorof(localy);
    refz = vectorof(localz);
}

void setrefaxis(int e, int reference) {
    refx = {1, 0, 0};
    refy = {0, 1, 0};
    refz = {0, 0, 1};
    if (reference != 0) {
        evaluate(reference);
        takereference();
    }
    evaluate(e);
    const double upright = 1e-6;  // a normal at right angles to the reference, rounded
    if (dot(vectorof(localz), refz) < -upright) mirroraxis(e);
}

static point3 unitof(const point3& v) {
    const double length = lengthof(v);
    return (1 / (length == 0 ? 1 : length)) * v;
}

// Do the normals of two elements that are folded against each other disagree? Two that share one
// edge agree when they run along it in opposite directions, whatever their warp; without one the
// fold itself tells: both normals point away from the other element's centre, or both to it.
static bool isturnedover(int a, int b, double fold) {
    const int count = nodesoftype(elems(a, 0));
    int shared = 0, sense = 0;
    for (int k = 1; k <= count; ++k)
        if (const int s = edgesense(b, cornerof(a, k), cornerof(a, k % count + 1)); s != 0) {
            ++shared;
            sense = s;
        }
    return shared == 1 ? sense > 0 : fold < 0;
}

// The angle of b that lays its local x axis along that of the reference.
static void takeangle(int b) {
    localaxes(b);
    const double cx = dot(vectorof(localx), refx), cy = dot(vectorof(localy), refx);
    double angle = rotpo(b);
    if (cx > 0)
        angle = std::atan(cy / cx);
    else if (cx < 0)
        angle = pi + std::atan(cy / cx);
    else if (cx == 0 && cy != 0)
        angle = std::copysign(pi / 2, cy);
    const double nothing = 1e-6;  // radians; what Singles leave of parallel edges
    rotpo(b) = std::fabs(angle) < nothing ? 0 : angle;
    checkangle = todegrees(rotpo(b));
    evaluate(b);
}

void localcheck(int a, int b) {
    const double flat = 0.00001;
    evaluate(a);
    takereference();
    const point3 ca = vectorof(axisorigin);
    evaluate(b);
    const point3 cb = vectorof(axisorigin), zb = vectorof(localz);
    const point3 middle = 0.5 * (ca + cb);
    const double s1 = dot(unitof(ca - middle), refz), s2 = dot(unitof(cb - middle), zb);
    const double fold = s1 * s2, c = dot(refz, zb);
    if (std::fabs(fold) >= flat ? isturnedover(a, b, fold) : c < 0) mirroraxis(b);
    if (std::fabs(c) > straight) takeangle(b);
}

// --- the walk -----------------------------------------------------------------------------------

// Ways over which the walk goes on when all that continues the surface over edges of two plates is
// done, in their order: what continues it where more plates meet, folds, branches, single nodes.
enum ways { straighton, overfolds, overbranches, overnodes, wayscount };
namespace {
struct axiswalk {
    axisreference reference;
    int group = 0, last = 0;    // in which it is, and the last that it goes over
    std::vector<bool> visited;  // by element
    std::vector<int> piece;     // elements in the order in which they were reached
    std::size_t taken = 0;      // of them, whose neighbours are checked
    std::size_t looked[wayscount] = {};
    std::vector<bool> exhausted;     // lists of plates at a node, by their place: none waits
    std::vector<std::size_t> begun;  // of each group's plates, those looked at for a start
};
}  // namespace
static axiswalk walk;

void startwalk(const axisreference& reference) {
    getadjelems();
    walk = {};
    walk.reference = reference;
    walk.visited.assign(std::size_t(nelems()) + 1, false);
    walk.exhausted.assign(adjelems.places(), false);
    walk.begun.assign(std::size_t(ngroups()) + 1, 0);
}

bool iswalking() {
    return walk.visited.size() == std::size_t(nelems()) + 1 && adjelems.elements == nelems() &&
           adjelems.nodes == nnodes() && adjelems.groups == ngroups();
}

static bool iswaiting(int e) {
    return !walk.visited[std::size_t(e)] && isshown(e, activeview);
}

static void selectalone(int e) {
    elemsel(0) = 1;
    elemsel(1) = float(e);
}

static void reach(int e) {
    walk.visited[std::size_t(e)] = true;
    walk.piece.push_back(e);
}

static int findstart(int g) {
    const int wanted = walk.reference.element;
    const auto plates = adjelems.of(g);
    if (wanted >= 1 && wanted <= nelems() && egroup(wanted) == g && isplate(wanted) &&
        iswaiting(wanted))
        return wanted;
    std::size_t& i = walk.begun[std::size_t(g)];
    while (i < plates.size() && !iswaiting(plates[i])) ++i;
    return i < plates.size() ? plates[i] : 0;
}

int startpiece(int g) {
    const int e = findstart(g);
    if (e == 0) return 0;
    walk.piece.clear();
    std::ranges::fill(walk.looked, 0);
    reach(e);
    walk.taken = 1;
    selectalone(e);
    const axisreference& from = walk.reference;
    if (from.start == axisstarts::global)
        setrefaxis(e, 0);
    else if (from.start == axisstarts::element && from.element != e)
        setrefaxis(e, from.element);
    return e;
}

// Calls visit(plate) for the plates of e's group, e but, at the edge between two nodes; the shorter
// list of the two nodes is gone through.
template <typename Visit>
static void eachatedge(int e, int a, int b, Visit visit) {
    const auto la = adjelems(egroup(e), a), lb = adjelems(egroup(e), b);
    for (const int other : la.size() < lb.size() ? la : lb)
        if (other != e && edgesense(other, a, b) != 0) visit(other);
}

template <typename Visit>
static void eachedge(int e, Visit visit) {
    const int count = nodesoftype(elems(e, 0));
    for (int k = 1; k <= count; ++k) visit(cornerof(e, k), cornerof(e, k % count + 1));
}

static void checkneighbour(int e, int other) {
    localcheck(e, other);
    reach(other);
}

static double cosinebetween(int a, int b) {
    localaxes(a);
    const point3 normal = vectorof(localz);
    localaxes(b);
    return std::fabs(dot(normal, vectorof(localz)));
}

// Calls visit(plate) for those that wait at edges where e meets it alone.
template <typename Visit>
static void eachalone(int e, Visit visit) {
    eachedge(e, [&](int a, int b) {
        int others = 0, one = 0;
        eachatedge(e, a, b, [&](int other) {
            ++others;
            one = other;
        });
        if (others == 1 && iswaiting(one)) visit(one);
    });
}

void modifyadjelem(int e) {
    walk.visited[std::size_t(e)] = true;
    eachalone(e, [e](int other) {
        if (cosinebetween(e, other) > straight) checkneighbour(e, other);
    });
}

// A plate that waits at an edge of e, the one that lies straightest to it and straighter than
// least; 0 for none.
static int findatedges(int e, double least) {
    int found = 0;
    eachedge(e, [&](int a, int b) {
        eachatedge(e, a, b, [&](int other) {
            if (!iswaiting(other)) return;
            const double c = cosinebetween(e, other);
            if (!(c > least)) return;
            least = c;
            found = other;
        });
    });
    return found;
}

static int findoverfold(int e) {
    int found = 0;
    eachalone(e, [&found](int other) { found = other; });
    return found;
}

static int findatnodes(int e) {
    for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) {
        const auto list = adjelems(egroup(e), cornerof(e, k));
        const std::size_t place = adjelems.placeof(list);
        if (walk.exhausted[place]) continue;
        const auto at = std::ranges::find_if(list, iswaiting);
        if (at != list.end()) return *at;
        walk.exhausted[place] = true;
    }
    return 0;
}

static int findneighbour(int e, ways way) {
    switch (way) {
        case straighton:
            return findatedges(e, straight);
        case overfolds:
            return findoverfold(e);
        case overbranches:
            return findatedges(e, -1);
        default:
            return findatnodes(e);
    }
}

int runthrough(int) {
    for (int way = 0; way < wayscount && walk.taken == walk.piece.size(); ++way) {
        std::size_t& i = walk.looked[way];
        for (; i < walk.piece.size() && walk.taken == walk.piece.size(); ++i)
            if (const int other = findneighbour(walk.piece[i], ways(way)); other != 0) {
                checkneighbour(walk.piece[i], other);
                break;  // there may be more beside this one
            }
    }
    if (walk.taken == walk.piece.size()) return 0;
    const int e = walk.piece[walk.taken++];
    selectalone(e);
    return e;
}

// --- whole walks --------------------------------------------------------------------------------

namespace {
// A walk shows where it is by the selection; the user's own comes back.
class keptselection {
  public:
    keptselection() {
        for (int i = 1; i <= int(elemsel(0)); ++i) list.push_back(elemsel(i));
    }
    ~keptselection() {
        elemsel(0) = float(list.size());
        for (std::size_t i = 0; i < list.size(); ++i) elemsel(long(i) + 1) = list[i];
    }
    keptselection(const keptselection&) = delete;
    keptselection& operator=(const keptselection&) = delete;

  private:
    std::vector<float> list;
};

struct formerangle {
    int element;
    double angle;
};
}  // namespace

static bool tellprogress(int done) {
    const int often = 8192;  // elements
    return done % often != 0 ||
           theplatform().progress("Homogenize Axis", double(done) / std::max(nelems(), 1));
}

static void walkgroup(int g, walkresult& result) {
    for (int e = startpiece(g); e != 0 && result.whole; e = startpiece(g))
        for (; e != 0 && result.whole; e = runthrough(g)) {
            modifyadjelem(e);
            result.whole = tellprogress(++result.elements);
        }
}

// Angles of the visible plates of these groups go to 0 first where that is wanted; the element that
// the user refers to keeps its own.
static walkresult walkover(int first, int last, const axisreference& reference, bool zeroing) {
    const keptselection selection;
    walkresult result;
    keptloads loads;
    startwalk(reference);
    changedorders = 0;
    std::vector<formerangle> former;
    first = std::max(first, 1);
    last = std::min(last, ngroups());
    for (int g = first; g <= last; ++g)
        for (const int e : adjelems.of(g)) {
            former.push_back({e, rotpo(e)});
            if (zeroing && isshown(e, activeview) && e != reference.element) rotpo(e) = 0;
        }
    for (int g = first; g <= last && result.whole; ++g) walkgroup(g, result);
    theplatform().endprogress();
    result.mirrored = changedorders;
    result.rows = loads.settle();
    for (const formerangle& f : former) {
        if (result.rows < 0 || !walk.visited[std::size_t(f.element)]) rotpo(f.element) = f.angle;
        result.turned += rotpo(f.element) != f.angle;
    }
    walk = {};
    return result;
}

walkresult browsgroup(int g, const axisreference& reference) {
    return walkover(g, g, reference, false);
}

walkresult homogenize(int g, const axisreference& reference) {
    return walkover(g, g, reference, true);
}

walkresult browse(const axisreference& reference) {
    return walkover(1, ngroups(), reference, true);
}

// The first piece that is left in the groups of the walk.
static int nextpiece() {
    int e = 0;
    for (; walk.group >= 1 && walk.group <= walk.last; ++walk.group)
        if ((e = startpiece(walk.group)) != 0) break;
    return e;
}

int firstelement(int g, const axisreference& reference) {
    startwalk(reference);
    walk.group = g == 0 ? 1 : g;
    walk.last = g == 0 ? ngroups() : std::min(g, ngroups());
    keptloads loads;
    const int e = nextpiece();
    loads.settle();
    return e;
}

int nextelement(walkresult& result) {
    result = {};
    if (!iswalking() || walk.taken == 0) return 0;
    const int at = walk.piece[walk.taken - 1];
    const std::size_t before = walk.piece.size();
    keptloads loads;
    changedorders = 0;
    modifyadjelem(at);
    int e = runthrough(walk.group);
    if (e == 0) e = nextpiece();
    result.elements = int(walk.piece.size() - std::min(before, walk.piece.size()));
    result.mirrored = changedorders;
    result.rows = loads.settle();
    if (result.rows < 0 || e == 0) walk = {};
    return result.rows < 0 ? 0 : e;
}

// Buoyancy presses against the local z axis, by the axis alone: no row can follow.
static std::string buoyancynote() {
    for (int lc = 1; lc <= nlc(); ++lc)
        if (lctype(lc) == casebuoyancy)
            return "; buoyancy of load case \"" + lcname(lc) +
                   "\" presses against the local z axis: see that it points to the water";
    return "";
}

const char* const toomanyrows =
    "The loads of the turned elements need more rows than declared; nothing was changed. Increase "
    "'Boundary Condition per loadcase'";

std::string walktext(const walkresult& r) {
    if (r.rows < 0) return toomanyrows;
    std::string text = numbertext(r.elements) + " element(s) checked, " + numbertext(r.mirrored) +
                       " mirrored, " + numbertext(r.turned) + " turned";
    if (r.rows > 0)
        text += "; " + numbertext(r.rows) + " load row(s) turned, which keep their direction";
    if (!r.whole) text += "; cancelled, the others are as they were";
    return r.mirrored > 0 ? text + buoyancynote() : text;
}

// --- the order of nodes by hand -----------------------------------------------------------------

walkresult changeplates(const std::vector<int>& meant, const std::function<void(int)>& change) {
    walkresult result;
    std::vector<int> plates;
    std::ranges::copy_if(meant, std::back_inserter(plates), isplate);
    keptloads loads;
    for (const int e : plates) change(e);
    result.elements = result.mirrored = int(plates.size());
    result.rows = loads.settle();
    return result;
}

walkresult flip(int g) {
    std::vector<int> meant;
    for (int e = 1; e <= nelems(); ++e)
        if (egroup(e) == g) meant.push_back(e);
    return changeplates(meant, [](int e) { changeorder(e, [e] { mirrornodes(e); }); });
}

// --- how well the axes agree --------------------------------------------------------------------

static std::array<point3, 3> triadof(int e) {
    evaluate(e);
    return {vectorof(localx), vectorof(localy), vectorof(localz)};
}

static std::vector<float> nodequality;  // by the place of a node's list in adjelems

axisquality localcheckbck() {
    getadjelems();
    axisquality found;
    nodequality.assign(adjelems.places(), 3);
    std::vector<std::array<point3, 3>> triad(std::size_t(nelems()) + 1);
    for (int g = 1; g <= ngroups(); ++g)
        for (const int e : adjelems.of(g)) triad[std::size_t(e)] = triadof(e);
    eachnodegroup([&](int, int, std::span<const int> list) {
        if (list.size() < 2) return;
        const auto& first = triad[std::size_t(list[0])];
        double sum = 0;
        for (const int e : list)
            for (std::size_t k = 0; k < 3; ++k) sum += dot(first[k], triad[std::size_t(e)][k]);
        const double quality = sum / double(list.size());
        nodequality[adjelems.placeof(list)] = float(quality);
        found.lowest = std::min(found.lowest, quality);
        found.highest = std::max(found.highest, quality);
        ++found.nodes;
    });
    return found;
}

std::vector<int> findwrongelem(double limit) {
    localcheckbck();
    std::vector<int> wrong;
    for (int e = 1; e <= nelems(); ++e) {
        if (egroup(e) < 1 || egroup(e) > ngroups() || !isplate(e)) continue;
        const int count = nodesoftype(elems(e, 0));
        int bad = 0;
        for (int k = 1; k <= count; ++k)
            bad += nodequality[adjelems.placeof(adjelems(egroup(e), cornerof(e, k)))] < limit;
        if (bad >= count - 1) wrong.push_back(e);
    }
    return wrong;
}

walkresult modifyaxis(double limit, bool& rotate, bool& three) {
    return changeplates(findwrongelem(limit), [&](int e) {
        if (rotate || three)
            rotateaxis(e, !rotate);
        else
            mirroraxis(e);
        rotate = !rotate;
        three = !three;
    });
}
