// SPDX-License-Identifier: GPL-3.0-or-later
// Sea and wind. Morison's formula takes the parts of velocity and acceleration that are normal to
// the member: Sarpkaya, Wave Forces on Offshore Structures, chapter 7.
#include "solver/loads/waveloads.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "solver/base/refuse.h"
#include "solver/elements/section.h"
#include "solver/elements/surface.h"
#include "solver/loads/integrate.h"
#include "solver/processes/ranks.h"

static const double windheight = 10;  // metres at which a wind case tells its speed

waveloads::waveloads(const model& m, const settings& set, const loadcase& c)
    : s(set), type(m.twod ? int(caseapplied) : c.type) {
    const double* const p = c.par;
    if (type == casewave && p[waveheight] > 0)
        wave = makewave(p[waveheight], p[waveperiod], p[wavedirection], p[waveshift], p[wavedepth],
                        s.gravity);
    if (type == casewind) {
        const double angle = p[winddirection] * M_PI / 180;
        wind = p[windspeed] * vec3(std::cos(angle), std::sin(angle), 0);
    }
    if (type == casebuoyancy) {
        level = p[buoyancylevel];
        bed = p[buoyancylevel] - p[buoyancydepth];
        weight = p[buoyancydensity];
    }
}

bool waveloads::onelement(const element& e, elvector& f) const {
    if (kindof(e.type).fam == family::line)
        return online(e, [&](double from, double to, const linedensity& load) {
            integrateline(e, from, to, load, f);
        });
    if (kindof(e.type).fam != family::plate) return false;
    if (type == casewind) return windonplate(e, f);
    return type == casebuoyancy && floatplate(e, f);
}

bool waveloads::online(const element& e, const linesink& sink) const {
    switch (type) {
        case casewave:
            return wave.height > 0 && waveonline(e, sink);
        case casewind:
            return windonline(e, sink);
        case casebuoyancy:
            return floatline(e, sink);
        default:
            return false;
    }
}

// Width of a section across a flow along this direction: that of the ellipse in its outline, which
// is the outline of a tube and the width of any section across one of its axes.
static double widthacross(const linesection& section, const mat3& axes, const vec3& direction) {
    return std::hypot(section.outer3 * axes.row(1).dot(direction),
                      section.outer2 * axes.row(2).dot(direction));
}

static vec3 normalpart(const vec3& v, const vec3& axis) {
    return v - v.dot(axis) * axis;
}

// Place on a line element, 0 at its first node, 1 at its second.
static vec3 placeon(const element& e, double x) {
    return (1 - x) * e.x[0] + x * e.x[1];
}

// --- waves --------------------------------------------------------------------------------------

bool waveloads::waveonline(const element& e, const linesink& sink) const {
    const linesection section = sectionof(e);
    const mat3 axes = lineaxes(e);
    const vec3 axis = axes.row(0);
    double from = 0, to = 1;
    const double crest = wave.height / 2 / s.length, floor = -wave.depth / s.length;
    if (!cutlevels(e.x[0].z(), e.x[1].z(), floor, crest, from, to)) return false;
    const auto load = [&](double x) -> vec3 {
        vec3 u, a;
        wave.flow(placeon(e, x) * s.length, u, a);
        u = normalpart(u, axis);
        a = normalpart(a, axis);
        const double speed = u.norm(), rate = a.norm();
        vec3 force = vec3::Zero();  // newtons a metre
        if (speed > 0)
            force += 0.5 * s.waterdensity * s.cd * s.length *
                     widthacross(section, axes, u / speed) * speed * u;
        if (rate > 0) {
            const double d = s.length * widthacross(section, axes, a / rate);
            force += s.waterdensity * s.cm * M_PI / 4 * d * d * a;
        }
        return force * s.length / s.force;
    };
    // Positive under water. A sixteenth of a wave is short enough to see where it is crossed.
    const auto under = [&](double x) {
        const vec3 at = placeon(e, x) * s.length;
        return wave.surface(at) - at.z();
    };
    const double sixteenth = wave.length() / 16 / s.length;
    const int pieces = std::max(4, int(std::ceil((to - from) * lengthof(e) / sixteenth)));
    bool any = false;
    for (int i = 0; i < pieces; ++i) {
        double a = from + (to - from) * i / pieces, b = from + (to - from) * (i + 1) / pieces;
        if (!cutpositive(under, a, b)) continue;
        sink(a, b, load);
        any = true;
    }
    return any;
}

// --- wind ---------------------------------------------------------------------------------------

vec3 waveloads::windat(double height) const {
    return wind * std::pow(height * s.length / windheight, s.windexponent);
}

bool waveloads::windonline(const element& e, const linesink& sink) const {
    const linesection section = sectionof(e);
    const mat3 axes = lineaxes(e);
    const vec3 axis = axes.row(0);
    double from = 0, to = 1;
    if (!cutlevels(e.x[0].z(), e.x[1].z(), 0, INFINITY, from, to)) return false;
    const double shape = section.tube ? s.cs : s.csflat;
    const vec3 across = normalpart(wind, axis);
    const double speed = across.norm();
    if (!(speed > 0)) return false;
    const double width = s.length * widthacross(section, axes, across / speed);
    const auto load = [&](double x) -> vec3 {
        const double z = std::max(0.0, placeon(e, x).z());
        const vec3 v = normalpart(windat(z), axis);
        return 0.5 * s.airdensity * shape * width * v.norm() * v * s.length / s.force;
    };
    // The speed rises from nothing at the ground like a root: ever shorter pieces towards it.
    const double ground = placeon(e, from).z() < placeon(e, to).z() ? from : to;
    const double sky = from + to - ground;
    double low = 0;
    for (const double high : {1.0 / 512, 1.0 / 64, 1.0 / 8, 1.0}) {
        const double a = ground + low * (sky - ground), b = ground + high * (sky - ground);
        sink(std::min(a, b), std::max(a, b), load);
        low = high;
    }
    return true;
}

bool waveloads::windonplate(const element& e, elvector& f) const {
    const double units = s.length * s.length / s.force;
    return integrateplate(
        e, 0, INFINITY,
        [&](const vec3& at, const vec3& normal) -> vec3 {
            const double speed = windat(std::max(0.0, at.z())).dot(normal);
            return 0.5 * s.airdensity * s.csflat * std::fabs(speed) * speed * units * normal;
        },
        f);
}

// --- buoyancy -----------------------------------------------------------------------------------

bool waveloads::floatline(const element& e, const linesink& sink) const {
    double from = 0, to = 1;
    if (!cutlevels(e.x[0].z(), e.x[1].z(), bed, level, from, to)) return false;
    const vec3 up(0, 0, weight * sectionof(e).enclosed);
    sink(from, to, [&](double) { return up; });
    return true;
}

bool waveloads::floatplate(const element& e, elvector& f) const {
    return integrateplate(
        e, bed, level,
        [&](const vec3& at, const vec3& normal) -> vec3 {
            return -weight * (level - at.z()) * normal;
        },
        f);
}

// --- parameters ---------------------------------------------------------------------------------

static void checkwave(const model& m, const settings& s, const loadcase& c, const std::string& name,
                      runlog& log) {
    const double height = c.par[waveheight], period = c.par[waveperiod], depth = c.par[wavedepth];
    if (height < 0) refuse(name + " has a wave height H below 0; correct it");
    if (height == 0) return;  // no load, which is told
    if (!(period > 0)) refuse(name + " needs a wave period T above 0; give it one");
    if (!(depth > 0)) refuse(name + " needs a water depth WD above 0; give it one");
    const double mostshift = 1e4;  // of wave lengths; the phase of larger ones is rounding
    if (std::fabs(c.par[waveshift]) > mostshift)
        refuse(name + " has a Shift of " + shortnumber(c.par[waveshift]) +
               " wave lengths, which tells none any more; give it within " +
               shortnumber(mostshift));
    if (!(height < 2 * depth))
        refuse(name + " has a wave whose trough lies below the sea bed; lower H or deepen WD");
    const linearwave w =
        makewave(height, period, c.par[wavedirection], c.par[waveshift], depth, s.gravity);
    log.line(name + ": wave length " + shortnumber(w.length()) +
             " m, crest at Z = " + shortnumber(height / 2 / s.length) +
             ", sea bed at Z = " + shortnumber(-depth / s.length));
    if (height > w.breaking())
        log.warn(name + ": a wave of this length breaks when it is higher than " +
                 shortnumber(w.breaking()) + " m");
    const double most = 1000;  // wave lengths in an element: surely wrong units, endless work
    std::atomic<bool> anyplate{false};
    refusefirstof(m, [&](int i) {
        const family fam = kindof(m.elements[std::size_t(i)].type).fam;
        if (fam == family::plate) anyplate = true;
        if (fam != family::line) return;
        const element e = elementat(m, s, i);
        if (!(lengthof(e) * s.length <= most * w.length()))
            refuseelement(e, "is more than a thousand wave lengths long in " + name +
                                 "; check T and the units of feiflu.ini");
    });
    double plates = anyplate;
    allranks().most(&plates, 1);
    if (plates != 0) log.warn(name + ": waves load line elements alone, the plates take none");
}

// Members in waves or wind whose group tells no outline may be far wider than their area's round
// bar.
static void tellround(const model& m, const settings& s, const loadcase& c, const std::string& name,
                      runlog& log) {
    if (c.type == casewave && c.par[waveheight] == 0) return;
    const double low = c.type == casewave ? -c.par[wavedepth] / s.length : 0,
                 high = c.type == casewave ? c.par[waveheight] / 2 / s.length : INFINITY;
    double count = 0, first = INFINITY;
    for (int i = 1; i <= m.nelems(); ++i) {
        if (kindof(m.elements[std::size_t(i)].type).fam != family::line || !isown(m, i)) continue;
        const element e = elementat(m, s, i);
        const auto [lower, upper] = std::minmax(e.x[0].z(), e.x[1].z());
        if (sectionof(e).outlined || upper <= low || lower >= high) continue;
        ++count;
        first = std::min<double>(first, e.name);
    }
    allranks().sum(&count, 1);
    if (count == 0) return;
    first = -allranks().greatest({-first})[0];
    log.warn(name + ": " + std::to_string(long(count)) + " line element(s), the first of them " +
             "element " + std::to_string(long(first)) +
             ", count as round bars of their area, as their group tells no height and width. Give "
             "it I xx, W xx, I yy and W yy, or make them pipes");
}

void checkwaveloads(const model& m, const settings& s, int lc, runlog& log) {
    const loadcase& c = m.cases[std::size_t(lc)];
    if (c.type < casewave) return;
    const std::string name = "Load case " + std::to_string(lc) + " \"" + c.name + "\"";
    if (m.twod)
        refuse(name +
               " needs heights along Z, which a 2-D analysis does not have. Analyse in 3-D or "
               "change the type of the case");
    const double direction = c.type == casewave ? c.par[wavedirection] : c.par[winddirection],
                 most = 36000;
    if (c.type != casebuoyancy && std::fabs(direction) > most)
        refuse(name + " has a direction of " + shortnumber(direction) +
               " degrees, which tells none any more; give it within " + shortnumber(most));
    if (c.type == casewave) checkwave(m, s, c, name, log);
    if (c.type != casebuoyancy) tellround(m, s, c, name, log);
    if (c.type != casebuoyancy) return;
    if (c.par[buoyancydepth] < 0) refuse(name + " has a water depth WD below 0; correct it");
    if (c.par[buoyancydensity] < 0) refuse(name + " has a density below 0; correct it");
}
