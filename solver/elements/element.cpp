// SPDX-License-Identifier: GPL-3.0-or-later
// Geometry and local axes of one element.
#include "solver/elements/element.h"

#include <Eigen/Geometry>
#include <cmath>

#include "solver/base/refuse.h"
#include "solver/elements/catalogue.h"

element elementat(const model& m, const settings& s, int number) {
    const elementdef& def = m.elements[std::size_t(number)];
    element e;
    e.number = number;
    e.name = m.nameof(number);
    if (!m.nodenumber.empty()) e.nodenames = m.nodenumber.data();
    e.type = def.type;
    e.nodes = factsof(def.type).nodes;
    e.group = def.group;
    e.g = &m.groups[std::size_t(def.group)];
    e.turn = def.turn;
    e.shear = s.shear;
    if (!m.slip.empty()) e.slip = &m.slip[std::size_t(number)];
    if (!m.fold.empty()) e.fold = &m.fold[std::size_t(number)];
    if (!m.curve.empty()) e.curve = m.curve[std::size_t(number)];
    e.twod = m.twod;
    for (int k = 0; k < e.nodes; ++k) {
        e.node[k] = def.node[k];
        e.x[k] = m.nodes[std::size_t(def.node[k])];
        if (m.twod) e.x[k].z() = 0;
    }
    return e;
}

std::string elementname(const element& e) {
    return "Element " + std::to_string(e.name) + " (" + factsof(e.type).name + ", group " +
           std::to_string(e.group) + " \"" + e.g->name + "\")";
}

void refuseelement(const element& e, const std::string& why) {
    refuse(elementname(e) + " " + why);
}

mat3 lineaxes(const element& e) {
    const vec3 e1 = (e.x[1] - e.x[0]).normalized();
    vec3 e2(0, 1, 0);
    if (e1.x() != 0 || e1.y() != 0) e2 = vec3(-e1.y(), e1.x(), 0).normalized();
    const vec3 e3 = e1.cross(e2);
    const double angle = e.field(fieldrotation) * EIGEN_PI / 180;
    const double c = std::cos(angle), s = std::sin(angle);
    mat3 axes;
    axes.row(0) = e1;
    axes.row(1) = c * e2 + s * e3;
    axes.row(2) = -s * e2 + c * e3;
    return axes;
}

mat3 plateaxes(const element& e) {
    vec3 e1, v;
    if (e.nodes == 4) {
        e1 = (e.x[1] + e.x[2] - e.x[0] - e.x[3]) / 2;
        v = (e.x[3] - e.x[0]) / 2;
    } else {
        e1 = e.x[1] - e.x[0];
        v = e.x[2] - e.x[0];
    }
    mat3 axes;
    axes.row(0) = e1.normalized();
    axes.row(2) = e1.cross(v).normalized();
    axes.row(1) = vec3(axes.row(2)).cross(vec3(axes.row(0)));
    return axes;
}

mat3 meanaxes(const element& e) {
    mat3 axes = plateaxes(e);
    if (e.nodes == 3) return axes;
    axes.row(2) = (e.x[2] - e.x[0]).cross(e.x[3] - e.x[1]).normalized();
    axes.row(1) = vec3(axes.row(2)).cross(vec3(axes.row(0)));
    return axes;
}

mat3 stressaxes(const element& e) {
    const mat3 axes = meanaxes(e);
    if (e.turn == 0) return axes;
    const double c = std::cos(e.turn), s = std::sin(e.turn);
    mat3 turned = axes;
    turned.row(0) = c * axes.row(0) + s * axes.row(1);
    turned.row(1) = -s * axes.row(0) + c * axes.row(1);
    return turned;
}

vec3 middleof(const element& e) {
    vec3 sum = vec3::Zero();
    for (int k = 0; k < e.nodes; ++k) sum += e.x[k];
    return sum / e.nodes;
}

double lengthof(const element& e) {
    return (e.x[1] - e.x[0]).norm();
}
