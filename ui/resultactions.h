// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of the menus Analyse and Post-Process.
#pragma once

#include "ui/actionkinds.h"

void addresultactions(actionrows& t);
