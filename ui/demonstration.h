// SPDX-License-Identifier: GPL-3.0-or-later
// Run Demo: the tour of data/demo played in the window, with pauses and explaining texts.
#pragma once

// Asks for the model in hand, then plays in a copy of the examples, so that nothing of the user's
// is written over. ESC or the button ends it; the mouse and the other keys rest meanwhile.
void rundemo();
