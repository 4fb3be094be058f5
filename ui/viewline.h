// SPDX-License-Identifier: GPL-3.0-or-later
// Where a view looks, as the line "view V NUMBER..." of a script has it.
#pragma once

#include <QStringList>

QString viewline(int nview);
// Sets the view by the words of such a line and draws it; refuses what is no such line.
void setview(const QStringList& words);
