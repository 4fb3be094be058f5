// SPDX-License-Identifier: GPL-3.0-or-later
// Cosmos command texts (.mod, .inp, .geo): nodes, elements with the sets that are active at their
// line, constraints, nodal loads. Both the comma commands and the older cards; what a model has no
// place for is counted and told once a word.
#pragma once

#include <string>
#include <string_view>

#include "exchange/imported.h"
#include "files/filemenu.h"

// Groups whose names are in the model already get a star when the text is imported into it.
void readcosmos(const std::string& path, imported& found, purposes purpose);
void readcosmos(std::string text, const std::string& name, imported& found, purposes purpose);

// By the beginning of a text: command lines; neither keywords with a star nor NEW-PROB.
bool iscosmostext(std::string_view head);
