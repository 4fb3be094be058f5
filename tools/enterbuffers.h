// SPDX-License-Identifier: GPL-3.0-or-later
// What was generated in the buffers enters the model: the end of "Accept".
#pragma once

#include <functional>
#include <string>

struct entrance {
    bool done = false;  // false: the model has no room, the user has been told
    std::string text;   // "; 4 nodes merged, 2 double elements", empty where nothing merges
};
// Pastes the buffers, calls pasted, and merges by the options. The buffers are empty afterwards,
// the mode of a paste is over.
entrance enterbuffers(const std::function<void()>& pasted);
