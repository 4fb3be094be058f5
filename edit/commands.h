// SPDX-License-Identifier: GPL-3.0-or-later
// Direct commands: typed instructions that work on the selection or give points to the running
// mode. A command is known by its first three characters, case as typed; its fields are separated
// by semicolons.
#pragma once

#include <functional>
#include <string>
#include <vector>

// Commands of higher floors, by their first three letters; those below come first.
struct commandrow {
    const char* name;
    std::function<void(const std::string& text)> run;
};
std::vector<commandrow>& morecommands();

extern std::string commandtext;
extern std::string commandfield[4];  // 1..3
extern double cmdval1, cmdval2, cmdval3;
extern double selcentrex, selcentrey, selcentrez;  // centroid of the selection

void runcommand(const std::string& text);
// Fills the fields and values from commandtext. False after the format error was told.
bool parsecommand();
void dispatchcommand();
void findcentroid();
void endfind();  // takes the circle about a found node away

// The lines of the help on direct commands.
extern const char* const commandhelp[10];
