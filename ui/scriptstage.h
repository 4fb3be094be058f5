// SPDX-License-Identifier: GPL-3.0-or-later
// A script played in the window before the user's eyes, as demonstrations and Play Script are;
// ui/script plays for the command line.
#pragma once

#include <string>

// Plays it on the model in hand, with its pauses or without; Esc or the button of the text strip
// ends it, the mouse and the other keys rest meanwhile. Returns the fault with its line; empty when
// it came to its end or was stopped.
std::string playonstage(const std::string& script, bool pauses);
