// SPDX-License-Identifier: GPL-3.0-or-later
// The user's working settings in DEFAULTS.DAT of appdir: layout, tolerance, views, colours, check
// marks, label fonts. The commands Save Settings and Get Settings.
#pragma once

void savesettings();  // a failure is told
// Applies the file line by line; a failing value is told and ends it, what stood before it is
// applied.
void getsettings();
