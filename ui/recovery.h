// SPDX-License-Identifier: GPL-3.0-or-later
// Unsaved work in the window: when its copy is written, and the offer at the next start.
#pragma once

void wirerecovery();   // after the steps of the window are wired
void offerrecovery();  // opens the dialog "recovery" when a process left unsaved work
void endrecovery();    // a clean end: the copy goes
