// SPDX-License-Identifier: GPL-3.0-or-later
// The operations of the Edit menu on the selection: copy, paste, delete, refine.
#pragma once

// The one gate from the buffers tmpnodes, tmpelems and graphics2 into the model: appends them, and
// makes the new items the selection. A model that would pass its declared sizes is left as it was
// and the user is told. Returns false then.
bool editpaste();
