// SPDX-License-Identifier: GPL-3.0-or-later
// The window's light or dark colours, for desktops that do not tell the toolkit theirs. Without a
// choice the platform's own style and palette stand.
#pragma once

#include <QString>

// "dark" or "light"; false for anything else.
bool settheme(const QString& name);
