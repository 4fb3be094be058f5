// SPDX-License-Identifier: GPL-3.0-or-later
// Session start-up and the settings as delivered.
#pragma once

#include <string>

// Prepares a session in directory: tables, declared sizes, allocation, defaults, catalogue, labels.
// Returns false when the program must end because a catalogue file is missing; the user was told.
bool start(const std::string& directory);

// Default values of the settings and the checked states of the menus; ends with newmodeldefaults.
void initsettings();
