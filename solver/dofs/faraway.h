// SPDX-License-Identifier: GPL-3.0-or-later
// What the rounding of coordinates does to elements. Model files hold Singles, so it grows with the
// distance from the origin over the size of the elements.
#pragma once

#include "solver/dofs/dofs.h"
#include "solver/elements/corners.h"
#include "solver/elements/element.h"

const double leastangle = 3e-5;  // radians between elements that count as one plane
const double quietangle = 0.03;  // what rounding tilts by more than this is told

// By node: the angle, radians, up to which what meets there counts as one plane or one line.
std::vector<float> flatness(const model& m, const settings& s, const dofmap& d);
// The same of an owner: of its node or of any node of its body, whichever is most.
double angleof(const dofmap& d, const std::vector<float>& angle, int owner);

// Angle by which rounding may tilt an element.
double tiltof(const element& e);
// How far places stand off the plane through them, at the most, over how far half a step of Singles
// takes them off it.
double offplane(std::span<const vec3> places);
// Of the nodes of the elements at a node.
double offplaneat(const model& m, std::span<const corner> here);
// Whether these lie in one plane but for their rounding. A curved surface does not: over two
// elements it rises by more, though each tilts by less.
bool isflatat(const model& m, std::span<const corner> here);

// Warns of elements so small or thin, so far from the origin, that Singles do not tell their shape,
// with the error to be expected; refuses them where next to nothing of the result would be right.
void checkfaraway(const model& m, const settings& s, runlog& log);

// The places of the nodes as they might have been, had the model stood a little elsewhere before it
// was rounded: numbers that need all digits of a Single change by up to two steps, those that are
// equal by the same. attempt: 1, 2, ... for different ones.
std::vector<vec3> otherwiserounded(const model& m, int attempt);

// Stiffness against that of the diagonal, of motions which nothing but such rounding may hold.
double stiffnessofrounding(const model& m);
