// SPDX-License-Identifier: GPL-3.0-or-later
// Angles of sections.
#include "exchange/orient.h"

#include <cmath>
#include <map>

#include "core/numtext.h"
#include "core/session.h"

static triple cross(const triple& a, const triple& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

static double dot(const triple& a, const triple& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool sectionangle(const triple& a, const triple& b, int axis, const triple& towards,
                  double& degrees) {
    // As Singles, which is what the model will take the level axis from.
    triple along;
    for (std::size_t k = 0; k < 3; ++k) along[k] = double(float(b[k])) - double(float(a[k]));
    const double length = std::sqrt(dot(along, along)), reach = std::sqrt(dot(towards, towards));
    if (!(length > 0) || !(reach > 0)) return false;
    for (double& v : along) v /= length;
    const double level = std::hypot(along[0], along[1]);
    const triple y0 = along[0] == 0 && along[1] == 0
                          ? triple{0, 1, 0}
                          : triple{-along[1] / level, along[0] / level, 0};
    const triple z0 = cross(along, y0);
    const double y = dot(towards, y0), z = dot(towards, z0);
    const double least = 1e-6;  // of the vector's length: nearer to the line it tells nothing
    if (std::hypot(y, z) < least * reach) return false;
    degrees = (axis == 3 ? std::atan2(-y, z) : std::atan2(z, y)) * 180 / pi;
    return true;
}

void orientgroups(imported& found) {
    const double parts = 10000;  // of a degree; angles that differ by less than one share a group
    std::map<std::pair<int, long>, int> made;
    std::map<int, long> first;  // the angle that each group itself takes
    if (found.orientations.empty()) return;
    std::vector<bool> oriented(found.elements.size() + 1, false);
    for (const importedorientation& o : found.orientations) oriented[std::size_t(o.element)] = true;
    for (std::size_t e = 1; e < oriented.size(); ++e)  // what tells no direction stays level
        if (const auto& element = found.elements[e - 1]; !oriented[e] && element.corners[2] == 0)
            first.try_emplace(element.group, 0);
    for (const importedorientation& o : found.orientations) {
        importedelement& e = found.elements[std::size_t(o.element) - 1];
        double degrees = 0;
        const auto at = [&](int corner) { return found.nodes[std::size_t(corner) - 1]; };
        if (e.group == 0) continue;
        if (!sectionangle(at(e.corners[0]), at(e.corners[1]), o.axis, o.towards, degrees)) {
            found.report.warn("The direction of a section lies along its element and is not used");
            found.report.about(reportitems::elements, o.element);
            continue;
        }
        if (std::fabs(degrees) > 180 - 0.5 / parts) degrees = 180;
        const long turn = std::lround(degrees * parts);
        const auto [at0, isfirst] = first.try_emplace(e.group, turn);
        if (at0->second == turn) {
            found.group(e.group).fields[fieldrotation] = double(turn) / parts;
            continue;
        }
        const auto [place, isnew] = made.try_emplace({e.group, turn}, 0);
        if (isnew) {
            importedgroup copy = found.group(e.group);
            copy.name += " " + numbertext(double(turn) / parts) + " deg";
            copy.fields[fieldrotation] = double(turn) / parts;
            place->second = int(found.groups.size()) + 1;
            found.groups.push_back(std::move(copy));
            found.report.changed("Groups divided, for sections are turned by group");
        }
        e.group = place->second;
    }
}
