// SPDX-License-Identifier: GPL-3.0-or-later
// The actions Record and Play Script: a script of what the user does, and its play in the window.
#pragma once

#include <QStringList>

void togglerecording();  // asks where the script goes; a second time it ends
void playfile();         // asks for a script and plays it on the model in hand

// How the session is set, as the line "session ..." has it, and the setting of it.
QString sessionline();
void setsession(const QStringList& words);
