// SPDX-License-Identifier: GPL-3.0-or-later
// The picture of a large model while it is turned, moved or zoomed: as many of its lines as the
// time of a frame allows. Free borders, folds and line elements come first, outlines of elements
// spread over the model fill the rest.
#pragma once

bool isquickwanted();  // the model is too large to be drawn whole in a frame
void drawquick(int nview);
