// SPDX-License-Identifier: GPL-3.0-or-later
// The units of the model: their names, numbers typed with a unit, factors from one set to another.
//
// What a number is stands as a formula in the letters of the captions: F force, L length, M or W
// mass, as in "F/L^2" or "F.L"; "L | L^2" is one or the other, "F/L^n" a load on a line or a face.
// Units in a formula are fixed: "m/s^2" is metres a second squared in every model; "Deg" are
// degrees, "" and "-" plain numbers. State: what the model says, what the solver's settings say for
// a model that says nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/kaltext.h"

struct unitset {
    std::string length, force, mass;                // names; empty where there is none
    double metres = 0, newtons = 0, kilograms = 0;  // in one unit; 0: nobody knows
    bool operator==(const unitset&) const = default;
};

extern unitset solverunits;  // what holds then: millimetres, newtons and kilograms as delivered

extern const char* const freeunits;                 // "free"
extern const std::vector<std::string> unitchoices;  // texts that the user chooses among

// False for names that are no units of length, force and mass; set is left alone then.
bool findunits(const std::string& text, unitset& set);
// The set with these factors, named where there are names for all three.
unitset namedunits(double metres, double newtons, double kilograms);
const unitset& modelunits();
extern std::string newunits;                 // text for new models
double roundedto(double value, int digits);  // significant ones

// "N/mm2" for "F/L^2"; the formula itself where the units have no names.
std::string unitname(std::string_view formula);
// The same for labels that stand as letters while the model says nothing.
std::string captionunit(std::string_view formula);
// What a number of the first set is multiplied with; 1 where one of them is not known.
double unitfactor(std::string_view formula, const unitset& from, const unitset& to);

// A number, or numbers with units that are turned into the model's: "25 kN", "3 ft 6 in",
// "7.85 t/m3". False leaves value as it was.
bool readvalue(std::string_view text, std::string_view formula, double& value,
               const unitset& set = modelunits());
bool hasunit(std::string_view text);      // of whatever kind
bool mayhaveunit(std::string_view text);  // a number, and what may become a unit while it is typed
double valueof(std::string_view text, std::string_view formula);  // 0 where it holds none
// Why not: "\"3 kN\" is no length" and what would be.
std::string valuefault(std::string_view text, std::string_view formula);
