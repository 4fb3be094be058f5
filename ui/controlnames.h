// SPDX-License-Identifier: GPL-3.0-or-later
// Names of controls for screen readers and other tools of the desktop: from the label that stands
// beside or above a control, its tip, or the frame around it.
#pragma once

#include <QString>

class QWidget;

// Names all controls of a window that have no name of their own.
void namecontrols(QWidget* window);
// Gives each button, choice and label of a field that has no key of its own one that is free in the
// window, the letter that stands first in its words; fields take the label beside them as theirs.
// OK, Cancel and the like have Enter and Esc.
void givekeys(QWidget* window);
// What a screen reader says of a control; empty where it is nameless.
QString nameofcontrol(const QWidget* control);
