// SPDX-License-Identifier: GPL-3.0-or-later
// Whether the model differs from what was last saved or opened: is there work to be lost?
#pragma once

void markassaved();  // the model in memory is the one on disk, or a new one
// True when a save would now write another model than at the mark. One pass over the model, for the
// commands that replace it. Views are no work.
bool ischanged();
