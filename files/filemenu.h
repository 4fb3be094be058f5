// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the File menu: New, Open, Import, Save As, the recent list, and the questions on
// leaving the program.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

enum class reply { done, cancelled, failed };

// What a foreign file is read for: a new model named after it, or more of the one in hand.
enum class purposes { open, import };

// File types beyond the native set; the exchange modules add their rows when the program starts. A
// caption names the filter of a dialog, "Gmsh mesh (*.msh)": one of those that each dialog begins
// with keeps its place there, others follow in the order of the rows; empty: not in that dialog.
struct fileformat {
    std::string extension;  // three letters, lower case
    std::string opencaption, importcaption, savecaption;
    // Tells the file by its beginning where several formats share an extension; none: any file.
    std::function<bool(std::string_view head)> knows = {};
    // Cancelled too where a dialog asks first and goes on by itself.
    std::function<reply(const std::string& path, purposes purpose)> read = {};
    std::function<reply(const std::string& path)> write = {};
    bool ismodel = true;  // else of its results or pictures: the model does not take its name
};
std::vector<fileformat>& fileformats();

// A foreign file has become the model: it is named after the file, and saved as a model of this
// program only under a name that the user gives.
void noteforeign(const std::string& path);
// The model has been written in another format, and is named after that file.
void nameafter(const std::string& path);

reply menunew();  // asks "Save model ?", then an empty model stands
// Asks "Save model ?" first where something changed since the last save.
reply menuopen();
reply askandopen(const std::string& path);
reply menuimport();                       // the paste of the buffers takes place at once
reply menusave();                         // the dialog of Save As, and the saving
reply openfile(const std::string& path);  // by its extension
// What the rooms above do with a model that has just come in hand.
extern std::function<void()> modelopened;

// Models opened or saved, oldest first: without extension, foreign files with theirs.
const std::vector<std::string>& recentfiles();
void addrecentfile();                                 // modelname, where it is not in the list
void setrecentfiles(std::vector<std::string> files);  // those of the starts before
std::string pathofrecent(std::size_t i);              // of the file that is opened

enum class closemodes { user, system };
// Asks "Save model before Exit?" with Yes and No when the user closes the window, then ends the
// program. False, and the program stays, when the question was put aside by Esc, or when the user
// wanted to save and that failed.
bool exitprompt(closemodes mode);
// The desktop ends the session: asks what becomes of unsaved work and leaves the rest to the
// desktop. False where the session is to go on.
bool logoutprompt();
// The Exit item: the same with Cancel. True when the program is to end.
bool menuexit();
