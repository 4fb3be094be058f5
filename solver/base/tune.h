// SPDX-License-Identifier: GPL-3.0-or-later
// Settings of memory, and those that the numerical libraries read when the program is loaded.
#pragma once

// Starts the program once more in its own place where these settings are not as they should be;
// returns where they are, or cannot be changed. words: those of main.
void tunelibraries(char** words);
