// SPDX-License-Identifier: GPL-3.0-or-later
// A random model of every element family, for tests of what holds for any.
#pragma once

#include <random>

#include "tests/solver/build.h"

using generator = std::mt19937;

double between(generator& random, double low, double high);
vec3 nudge(generator& random, double size);  // each part of -size..size

// Distorted sheets of fineness x fineness quadrilaterals or twice as many triangles and a frame
// with springs, a mass and an arm, in metres; six forces on one node and rows on all elements.
// directed: sections that stay what they are in turns about the vertical alone.
build everything(unsigned seed, int fineness, bool directed);
