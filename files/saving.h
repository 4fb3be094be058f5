// SPDX-License-Identifier: GPL-3.0-or-later
// Save of a whole model: each file of the set a guarded step, then all of them take their places at
// once. What was not read, or changed on disk meanwhile, is replaced only after a question.
#pragma once

#include <string>

struct filebox;

// Writes the set under modelname. Each file that fails has its own message, with the reason; they
// are shown together, and the user keeps the files of the last save, replaces those that could be
// written, or saves under another name. Returns true when the whole model is on disk.
bool savemodel();
// The dialog of Save As, for a save that failed; true when the model was saved there.
extern bool (*saveelsewhere)();
// The model in hand has its name from a foreign file: until it is saved under a name that the user
// gives, every save asks for one.
void noteunnamed();
void notenamed();
bool isunnamed();
bool savecombinations();  // .lco alone, told in the same way
// Takes the name, asks before an existing model is replaced, saves. False when the user said No or
// a file failed.
bool savemodelas(const std::string& name);
// True when no file of that name and extension stands, or the user agrees to replace it.
bool askoverwrite(const std::string& name, const std::string& extension);
// A file to write: asks for it, gives a name without an extension this one (".csv"), and asks again
// before a file that stands there is replaced. "" when the user gives it up.
std::string asktarget(const filebox& box, const std::string& extension);
// As askoverwrite for a whole model and its results: without a .tek, files of these names are
// somebody else's, and are named in the question.
bool askreplacemodel(const std::string& name);
