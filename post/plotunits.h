// SPDX-License-Identifier: GPL-3.0-or-later
// Units of results, where the model says its units; nowhere else a name is put to a number.
// Stresses are shown in N/mm2, ksi or psi whatever the lengths of the model are, so that they have
// the few digits that engineers know them by.
#pragma once

#include <string>
#include <string_view>

// What a result in units of the model is multiplied with to be shown, and the unit then.
double shownfactor(std::string_view formula);
double shownfactor(std::string_view formula, const struct unitset& set);
std::string resultunit(const std::string& formula);  // "" where the model does not say
// "SX [N/mm2]", the caption alone where the model does not say; of model data "E [kN/m2]".
std::string headed(const std::string& caption, const std::string& formula);
std::string headedinput(const std::string& caption, const std::string& formula);
// A line of the report with formulas in brackets: names in their place, the columns kept.
std::string unitline(const std::string& line);
// " N/mm2" behind a number.
std::string behind(const std::string& formula);

const char* componentformula(int component);  // of post/components
