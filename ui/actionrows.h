// SPDX-License-Identifier: GPL-3.0-or-later
// What there is to do: a new menu item, with its button, keys, place in a pop-up, name for scripts
// and topic of the manual, is one row in actionrows.cpp,
// viewactions.cpp or resultactions.cpp.
#pragma once

// Puts all rows into the table, once.
void fillactions();
