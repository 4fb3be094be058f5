// SPDX-License-Identifier: GPL-3.0-or-later
// The operations of the Edit menu on the selection: copy, cut, paste, delete. Undo of a move is in
// edit/move.h, refinement in edit/refine.h.
#pragma once

#include <functional>

// Fills the copy buffer from the selection: nodes, elements with their nodes, or graphic elements.
// The selection no longer shows, the lists stay.
void editcopy();
void editcut();

// What the room of the patches does for them: the selected ones into the buffers, and their recipes
// into the model once graphic elements and elements have been pasted behind those that there were.
struct patchcopier {
    std::function<void()> copy;
    std::function<void(int graphicsbefore, int elementsbefore)> pasted;
};
extern patchcopier copierofpatches;

// The one gate from the buffers tmpnodes, tmpelems and graphics2 into the model: appends them, and
// makes the new items the selection. Redraws. A model that would pass its declared sizes is left as
// it was and the user is told. Returns false then.
bool editpaste();

// Deletes selected patches, elements with the nodes that only they used, nodes and graphic
// elements. A selected node that an element uses stays, which is told once. Numbers above what goes
// fall, conditions follow their node or element or go with it.
void editdelete();
