// SPDX-License-Identifier: GPL-3.0-or-later
// What an analysis still needs of the model, in plain words, and where each is given. The thorough
// look at a model is in tools/findings.
#pragma once

#include <string>
#include <vector>

enum class needplaces { elements, groups, supports, plane, loads };

struct need {
    std::string text;
    needplaces place;
    int group = 0;  // that lacks something
};

// The most basic first; empty where the solver has all that it asks for. One pass over the
// elements.
std::vector<need> findneeds();
