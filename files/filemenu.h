// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the File menu: New, Open, Import, Save As, the recent list, and the questions on
// leaving the program.
#pragma once

#include <functional>
#include <string>
#include <vector>

// File types beyond the native set; the exchange modules add their rows when the program starts.
struct fileformat {
    std::string extension;                              // three letters, lower case
    std::function<bool(const std::string& base)> open;  // reads base + extension as the model
    std::function<bool(const std::string& base)> save;
    std::function<bool(const std::string& base)> import;  // into the buffers, for the paste
};
std::vector<fileformat>& fileformats();

enum class reply { done, cancelled, failed };

reply menunew();  // asks "Save model ?", then an empty model stands
// Asks "Save model ?" first where something changed since the last save.
reply menuopen();
reply askandopen(const std::string& path);
reply menuimport();                       // the paste of the buffers takes place at once
reply menusave();                         // the dialog of Save As, and the saving
reply openfile(const std::string& path);  // by its extension

// Models opened or saved in this session, oldest first.
const std::vector<std::string>& recentfiles();
void addrecentfile();  // modelname, where it is not in the list
reply openrecent(int i);

enum class closemodes { user, system };
// Asks "Save model before Exit?" with Yes and No when the user closes the window, then ends the
// program. False, and the program stays, when the question was put aside by Esc, or when the user
// wanted to save and that failed.
bool exitprompt(closemodes mode);
// The Exit item: the same with Cancel. True when the program is to end.
bool menuexit();
