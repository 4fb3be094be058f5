// SPDX-License-Identifier: GPL-3.0-or-later
// What the rounding of coordinates does to elements. The files hold Singles.
#include "solver/dofs/faraway.h"

#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "solver/base/refuse.h"
#include "solver/elements/corners.h"
#include "solver/elements/kinds.h"
#include "solver/processes/ranks.h"

// Beyond it nothing is of one plane. Where what is flat counted so by less than rounding tilts it,
// membranes would kink at their nodes and carry next to nothing.
static const double mostangle = 0.3;

// The least height of an element over its edges; a bar's length.
static double heightof(const element& e) {
    if (e.nodes == 2) return lengthof(e);
    double longest = 0;
    for (int c = 0; c < e.nodes; ++c)
        longest = std::max(longest, (e.x[(c + 1) % e.nodes] - e.x[c]).norm());
    const int last = e.nodes - 1;
    const vec3 twice = (e.x[last] - e.x[last - 2]).cross(e.x[last - 1] - e.x[0]);
    return twice.norm() / ((last - 1) * longest);
}

// Coordinates come from Singles; four steps: two elements, each with its corners' rounding on
// either side.
double tiltof(const element& e) {
    const double step = std::numeric_limits<float>::epsilon(), steps = 4;
    double far = 0;
    for (int c = 0; c < e.nodes; ++c) far = std::max(far, e.x[c].cwiseAbs().maxCoeff());
    return steps * step * far / heightof(e);
}

// --- the error that it makes --------------------------------------------------------------------

// Whether a coordinate may have been rounded to a Single; files by other programs may tell more.
static bool issingle(double x) {
    if (double(float(x)) == x) return true;
    char text[40];  // a Single takes nine digits at most
    std::snprintf(text, sizeof text, "%.9g", x);
    return std::strtod(text, nullptr) == x;
}

// How far Singles lie apart at an element along each axis; 0 where its corners share one
// coordinate, which rounding then moves together.
static vec3 stepsof(const element& e) {
    vec3 steps = vec3::Zero();
    for (int k = 0; k < 3; ++k) {
        double far = 0;
        bool differs = false;
        for (int c = 0; c < e.nodes; ++c) {
            far = std::max(far, std::fabs(e.x[c][k]));
            differs |= e.x[c][k] != e.x[0][k];
        }
        const auto place = float(far);
        if (differs) steps[k] = double(std::nextafter(place, INFINITY)) - double(place);
    }
    return steps;
}

// The same, 0 where they stand on a coarser grid, exactly.
static vec3 gridof(const element& e) {
    vec3 grid = stepsof(e);
    for (int k = 0; k < 3; ++k) {
        const auto fine = [&](const vec3& x) { return std::fmod(x[k], 4 * grid[k]) != 0; };
        if (grid[k] > 0 && std::none_of(e.x, e.x + e.nodes, fine)) grid[k] = 0;
    }
    return grid;
}

static bool fromsingles(const element& e) {
    for (int c = 0; c < e.nodes; ++c)
        for (int k = 0; k < 3; ++k)
            if (!issingle(e.x[c][k])) return false;
    return true;
}

// Part of its stiffness by which an element is wrong for that: in length by what its ends are off;
// and a shell that waves by some of its thickness stretches by bending, 12 times the square of the
// wave over the thickness. Both by the mean square of the rounding, as strips of shells in oblique
// planes show it.
static double errorof(const element& e, const vec3& grid) {
    const vec3 mean = grid / std::sqrt(12.0);
    const double along = 2 * mean.maxCoeff() / heightof(e);
    if (e.type != typeshell3 && e.type != typeshell4) return along;
    const vec3 wave = mean.cwiseProduct(vec3(meanaxes(e).row(2)));
    const double thickness = e.field(fieldthickness), share = 15;
    return std::max(along, share * wave.squaredNorm() / (thickness * thickness));
}

static std::string farwords(double worst) {
    return " too far from the origin for their size and thickness: the files tell the places of "
           "nodes in seven digits, which makes the stiffness of elements there wrong by about " +
           shortnumber(std::round(100 * worst)) + " %. Move the model nearer to the origin";
}

void checkfaraway(const model& m, const settings& s, runlog& log) {
    double count = 0, worst = 0;
    int at = 0;
    const double little = 0.005, much = 0.25;
    for (int n = 1; n <= m.nelems(); ++n) {
        const family fam = kindof(m.elements[std::size_t(n)].type).fam;
        if ((fam != family::line && fam != family::plate) || !isown(m, n)) continue;
        const element e = elementat(m, s, n);
        if (!(errorof(e, stepsof(e)) > little)) continue;  // at the most
        const double error = errorof(e, gridof(e));
        if (!(error > little && fromsingles(e))) continue;
        ++count;
        if (error <= worst) continue;
        worst = error;
        at = n;
    }
    allranks().sum(&count, 1);
    if (count == 0) return;
    const int mine = at > 0 ? m.nameof(at) : 0;
    const std::vector<double> all = allranks().greatest({worst, -double(mine)});
    worst = all[0];
    const int name = int(-all[1]);
    std::string fault;
    if (worst > much && mine == name)
        fault = elementname(elementat(m, s, at)) + " and " + std::to_string(long(count) - 1) +
                " other(s) lie" + farwords(worst);
    refusefirst(0, fault);
    log.warn(std::to_string(long(count)) + " element(s), the worst of them element " +
             std::to_string(name) + ", lie" + farwords(worst));
}

// --- angles that are noise ----------------------------------------------------------------------

static double stepat(double x) {
    const auto place = float(std::fabs(x));
    return double(std::nextafter(place, INFINITY)) - double(place);
}

double offplane(std::span<const vec3> places) {
    vec3 middle = vec3::Zero(), step = vec3::Zero();
    for (const vec3& x : places) {
        middle += x / double(places.size());
        for (int k = 0; k < 3; ++k) step[k] = std::max(step[k], stepat(x[k]));
    }
    mat3 spread = mat3::Zero();
    for (const vec3& x : places) spread += (x - middle) * (x - middle).transpose();
    const Eigen::SelfAdjointEigenSolver<mat3> axes(spread);
    const vec3 normal = axes.eigenvectors().col(0);
    double most = 0;
    for (const vec3& x : places) most = std::max(most, std::fabs(normal.dot(x - middle)));
    return most / (normal.cwiseAbs().dot(step) / 2);
}

double offplaneat(const model& m, std::span<const corner> here) {
    std::vector<vec3> places;
    for (const corner& one : here) {
        const elementdef& def = m.elements[std::size_t(one.element)];
        for (int k = 0; k < factsof(def.type).nodes; ++k)
            places.push_back(m.nodes[std::size_t(def.node[k])]);
    }
    return offplane(places);
}

// Rounding takes the plane through the places along by up to half of itself.
bool isflatat(const model& m, std::span<const corner> here) {
    return offplaneat(m, here) <= 1.5;
}

std::vector<float> flatness(const model& m, const settings& s, const dofmap& d) {
    std::vector<float> angle(d.owner.size(), float(leastangle));
    std::vector<char> tilted(d.owner.size(),
                             0);  // 1: by more than what is told; 2: and a bar there
    for (int n = 1; n <= m.nelems(); ++n) {
        const family fam = kindof(m.elements[std::size_t(n)].type).fam;
        if (fam != family::line && fam != family::plate) continue;
        const element e = elementat(m, s, n);
        const double noise = std::min(mostangle, tiltof(e));
        for (int c = 0; c < e.nodes; ++c) {
            const auto i = std::size_t(e.node[c]);
            angle[i] = std::max(angle[i], float(noise));
            if (noise > quietangle) tilted[i] |= 1;
            if (fam == family::line) tilted[i] |= 2;
        }
    }
    if (std::ranges::none_of(tilted, [](char at) { return (at & 1) != 0; })) return angle;
    const cornerlist corners = listcorners(m);
    for (std::size_t n = 1; n < tilted.size(); ++n)
        if ((tilted[n] & 1) != 0 && ((tilted[n] & 2) != 0 || !isflatat(m, corners.of(n))))
            angle[n] = float(quietangle);
    return angle;
}

double angleof(const dofmap& d, const std::vector<float>& angle, int owner) {
    const int b = d.bodyof[std::size_t(owner)];
    if (b < 0) return angle[std::size_t(owner)];
    double most = leastangle;
    for (const int n : d.bodies[std::size_t(b)].nodes)
        most = std::max(most, double(angle[std::size_t(n)]));
    return most;
}

// --- places rounded otherwise -------------------------------------------------------------------

// A number of -1..1 that goes with another by chance: Steele, Lea and Flood, Fast splittable
// pseudorandom number generators, 2014.
static double spreadof(double x, int attempt) {
    auto z = std::bit_cast<std::uint64_t>(x) + std::uint64_t(attempt) * 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return double((z ^ (z >> 31)) >> 11) * 0x1p-52 - 1;
}

static double otherwise(double x, int attempt) {
    const double step = stepat(x), steps = 2;
    if (std::fmod(x, 4 * step) == 0 || !issingle(x)) return x;
    return x + steps * step * spreadof(x, attempt);
}

std::vector<vec3> otherwiserounded(const model& m, int attempt) {
    std::vector<vec3> nodes = m.nodes;
    for (int n = 1; n <= m.nnodes(); ++n)
        for (int k = 0; k < 3; ++k)
            nodes[std::size_t(n)][k] = otherwise(nodes[std::size_t(n)][k], attempt);
    return nodes;
}

double stiffnessofrounding(const model& m) {
    const nodebox box = boxof(m);
    const double size = box.size().maxCoeff();
    if (!(size > 0)) return 0;
    const double tilt = stepat(std::max(box.high.maxCoeff(), -box.low.minCoeff())) / size,
                 part = 10;  // a tenth of it may move
    return std::pow(part * tilt, 2);
}
