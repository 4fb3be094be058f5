// SPDX-License-Identifier: GPL-3.0-or-later
// A MOSES text as statements: comments dropped, continued lines joined, variables replaced, the
// units that hold noted. What a reader of the model has no use for is told in the report.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/importreport.h"
#include "exchange/textlines.h"

// Coordinates are in the unit of length, forces in that of force; section sizes are millimetres
// beside metres and inches beside feet, stresses MPa and ksi.
struct mosesunits {
    double length = 1;     // metres
    double force = 1;      // kN
    bool ismetric = true;  // metres
    const char* lengthname = "metres";
    const char* forcename = "kN";
    const char* ofmodel = "m kN t";  // the model's units beside these; empty: no force like this
    double mass = 1;                 // that goes with them, tonnes
    double size() const { return ismetric ? 0.001 : 0.0254; }                              // metres
    double stress() const { return ismetric ? 1000 : 4.4482216152605 / 0.0254 / 0.0254; }  // kN/m2
};

struct mosesstatement {
    long line = 0;  // where it begins
    int units = 0;  // of the deck's list
    std::string_view text;
};

class mosesdeck {
  public:
    // Throws as textlines; what is wrong in a line is told in the report.
    mosesdeck(std::string content, const std::string& name, importreport& report);
    const std::vector<mosesstatement>& statements() const { return all; }
    const mosesunits& unitsof(const mosesstatement& s) const {
        return s.units < 0 ? base() : systems[std::size_t(s.units)];
    }
    // The units of the model: the first that the text tells, with kips for tons beside feet.
    const mosesunits& base() const { return model; }

  private:
    bool nextraw(std::string_view& text, long& line);
    bool isskipped(std::string_view word, long line);
    bool replacevariables(std::string_view& text, long line);
    bool findvariable(std::string_view& rest, std::string_view& value, long line);
    void interpret(std::string_view text, long line);
    void assign(std::string_view text, long line);
    void dimension(std::string_view text, long line);
    void setunits(std::string_view length, std::string_view force, long line);

    textlines in;
    importreport& report;
    std::vector<mosesstatement> all;
    std::deque<std::string> kept;  // texts that do not stand in the file as they are
    std::unordered_map<std::string, std::string> variables;
    std::size_t growth = 0;  // characters that variables have added
    std::vector<mosesunits> systems;
    mosesunits model;
    int current = -1, saved = -1;  // of systems; -1: none told
    std::string skipping, until;   // of a block that is passed over: its first word, its last
    long skippedline = 0;
    int skipdepth = 0;
};

// Words end at blanks and commas.
bool nextmosesword(std::string_view& text, std::string_view& word);
// "-" and a letter; "-" and a digit is a number.
bool isoption(std::string_view word);
// Is the word, without regard to case, the name or at least so many characters of its beginning?
bool shortens(std::string_view word, std::string_view name, std::size_t least);
