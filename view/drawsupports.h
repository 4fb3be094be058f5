// SPDX-License-Identifier: GPL-3.0-or-later
// Supports as the field draws them, from all that is held at a node together.
#pragma once

// Clamp where all is held, pin where all movements are, else a roller for each of them, and a
// stroke for each rotation that is held. In a 2-D analysis what lies out of the plane counts as
// held. A clamp stands across the members that it holds. An imposed movement has an arrow.
void drawsupports(int nview);
