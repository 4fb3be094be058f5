// SPDX-License-Identifier: GPL-3.0-or-later
// The help window: shows the manual where no browser can be started, and while a script plays.
#pragma once

#include <QString>

void showhelp(const QString& path);
