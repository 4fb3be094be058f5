// SPDX-License-Identifier: GPL-3.0-or-later
// The room files: the native files of a model, read and saved whole, settings, unsaved work and its
// recovery, and the hand-over to the solver.
//
// Open and import of a whole model: the file set in its order, each file a guarded step.
#pragma once

#include <functional>
#include <string>

// Has the model a name to save under? "None" and "" are names of no file.
bool isnamed();

// Resets the model and reads the set. A side file that is missing leaves its part at the default;
// one that is damaged does too, is told with file and line, and is not overwritten unasked. A model
// over the declared sizes is told with the sizes that it needs, and the user may have them
// declared. When .tek itself can not be read the model that stood before comes back. Returns false
// when no model was opened.
bool openmodel(const std::string& name);
// What the rooms above do with the patches of a model that was read.
extern std::function<void()> patchesread;

// Nodes and elements of another model into tmpnodes and tmpelems, its groups behind those in hand.
bool importmodel(const std::string& name);

void showmodelname();  // the window's title
