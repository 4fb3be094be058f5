// SPDX-License-Identifier: GPL-3.0-or-later
// How the surface of a shell goes on over the edges of its elements, which the loads that reach a
// curved one have to know.
#pragma once

#include <array>
#include <vector>

#include "solver/elements/element.h"

// What continues the surface at the edges of a triangle or quadrilateral: the number of an element;
// below 0 a plane of symmetry, across x (-1), y or z; 0 nothing.
using edgeneighbours = std::array<int, mostnodes>;

inline bool isshell(int type) {
    return type == typeshell3 || type == typeshell4;
}

inline bool bends(int type) {
    return isshell(type) || type == typeplate3 || type == typeplate4;
}

// Unit normal of a plate or shell.
vec3 normalof(const model& m, const elementdef& e);
// Whether elements with these normals, of either sign, are of one surface and do not meet at a fold.
bool continues(const vec3& normal, const vec3& other);
// Fills m.fold. neighbours: by element. Wants m.curve.
void measurefolds(model& m, const settings& s, std::vector<edgeneighbours> neighbours);
