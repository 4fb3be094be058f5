// SPDX-License-Identifier: GPL-3.0-or-later
// Save, open and import of a whole model: the file set in its order, each file a guarded step.
#pragma once

#include <string>

// Has the model a name to save under? "None" and "" are names of no file.
bool isnamed();

// Writes the set under modelname. Each file that fails is told by its own message and leaves its
// older content on disk; the others are written. Returns true when all are written.
bool savemodel();
bool savecombinations();  // .lco alone, told in the same way
// Takes the name, asks before an existing model is replaced, saves. False when the user said No or
// a file failed.
bool savemodelas(const std::string& name);
// True when no file of that name and extension stands, or the user agrees to replace it.
bool askoverwrite(const std::string& name, const std::string& extension);

// Resets the model and reads the set. A side file that is missing leaves its part at the default;
// one that is damaged does too and is told with file and line. When .tek itself can not be read
// the model that stood before comes back. Returns false when no model was opened.
bool openmodel(const std::string& name);

// Nodes and elements of another model into tmpnodes and tmpelems, its groups behind those in hand.
bool importmodel(const std::string& name);

void showmodelname();  // the window's title
