// SPDX-License-Identifier: GPL-3.0-or-later
// What lies under the pointer: the item whose drawn shape passes within a few pixels of the click.
#pragma once

#include <array>
#include <functional>
#include <vector>

// The option "Pick what lies under the pointer"; off, the defining points alone decide.
extern bool pickshapes;

// The click is where unprojectpoint left it, persu and persv its place. Each returns 0 where the
// option is off or nothing is near enough. Points and lines come before the faces that they lie on,
// faces in front before those behind; among equals the nearer defining point decides.
int elementunder(int nview);
// The same without a pass over the model, for the moving pointer.
int elementunderkept(int nview);
int graphicunder(int nview);
int patchunder(int nview);

// Graphic element g as a chain of points, model coordinates; the graphics tool hangs it in.
extern std::function<std::vector<std::array<double, 3>>(int g)> shapeofgraphic;
