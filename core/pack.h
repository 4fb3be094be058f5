// SPDX-License-Identifier: GPL-3.0-or-later
// Compaction of the model's lists: free element and graphic slots are closed up, boundary
// condition rows that lost their node or element go.
#pragma once

// Closes up the element list; element loads follow their element, those of free slots go.
// Rotations, names, releases, visibility and the selection move with their element.
void packelems();
// Closes up the graphic list; patch members take the new numbers.
void packgraphics();
// Drops constraint and load rows whose node or element is 0 or above the count.
void compactbc();
