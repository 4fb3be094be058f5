// SPDX-License-Identifier: GPL-3.0-or-later
// The window's light or dark colours, for desktops that do not tell the toolkit theirs. Without a
// choice the platform's own style and palette stand.
#pragma once

#include <QString>

// "dark" or "light"; false for anything else.
bool settheme(const QString& name);

// Do the views take a dark ground where the window is dark? A choice of the user.
bool doviewsfollow();
void setviewsfollow(bool on);
void followtheme();  // the views as chosen, for the window's present colours
