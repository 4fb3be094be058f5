// SPDX-License-Identifier: GPL-3.0-or-later
// MOSES model texts (.ppo) from the model: the plates of one chosen group as the panels of a hull,
// the others beside it as compartments or parts, line elements as a jacket.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "exchange/importreport.h"

// The dialog MosesSettings, "Moses Export Settings".
struct mosessettings {
    std::string path;  // of the text to be written
    std::vector<std::string> groups;
    int chosen = 0;  // of the list, from 0
};
mosessettings& mosessettingsform();
void openmosessettings(const std::string& path);  // fills the list from the model
// Writes the text for the chosen group; a fault is told and the old file stands.
void acceptmosessettings();

// The plates of the group become the first piece. Throws errpathaccess, errdiskfull, and errtype
// for a model with more nodes than names of eight characters can tell apart.
void exportmoses(const std::string& path, int group, importreport& report);

// A name of at most so many characters that no reader splits, different from the ones before it.
class plainnames {
  public:
    explicit plainnames(std::size_t longest) : most(longest) {}
    std::string plain(const std::string& name);

  private:
    std::size_t most;
    std::unordered_map<std::string, long> used;  // in upper case, and the last number behind it
};
