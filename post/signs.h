// SPDX-License-Identifier: GPL-3.0-or-later
// The sign convention of member forces as a drawing: what acts as positive on the face that looks
// along e1, in the plane of e1 and e2 and in that of e1 and e3.
#pragma once

struct surface;

// In the rectangle from its top left corner, centimetres, in the surface's font.
void drawsigns(surface& s, double left, double top, double width, double height);
