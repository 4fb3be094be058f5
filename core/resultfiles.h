// SPDX-License-Identifier: GPL-3.0-or-later
// The files that an analysis writes beside the model.
#pragma once

#include <string>
#include <vector>

extern const std::vector<std::string> resultextensions;

// Files that bear the name of a result of this model and are somebody else's: notes.log and
// notes.DAT are likely names.
std::vector<std::string> foreignresults(const std::string& base);
// The results of this model, and nothing of others.
std::vector<std::string> ownresults(const std::string& base);
