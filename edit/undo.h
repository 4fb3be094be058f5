// SPDX-License-Identifier: GPL-3.0-or-later
// Undo of the last move: one level, nodes and graphic points. Every step of every tool can be taken
// back by the journal, see core/journal.h.
#pragma once

void storeundo();  // the places of the selection, before it is moved
void editundo();
