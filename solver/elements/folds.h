// SPDX-License-Identifier: GPL-3.0-or-later
// How the surface of a shell goes on over the edges of its triangles, which the loads that reach a
// curved one have to know.
#pragma once

#include <array>
#include <vector>

#include "solver/base/model.h"

// What continues the surface at the three edges of a triangle: the number of an element, of three
// corners or four; below 0 a plane of symmetry, across x (-1), y or z; 0 nothing.
using edgeneighbours = std::array<int, 3>;

// Unit normal of a plate or shell.
vec3 normalof(const model& m, const elementdef& e);
// How far a triangle's surface is curved both ways: 0 on a cylinder, 1 on a sphere and on a saddle
// of equal curvatures.
double roundness(const model& m, int e);
// Fills m.fold. neighbours: by element, of triangular shells.
void measurefolds(model& m, std::vector<edgeneighbours> neighbours);
