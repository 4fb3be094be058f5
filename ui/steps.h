// SPDX-License-Identifier: GPL-3.0-or-later
// Step Back and Step Forward in the window, and the doors of the toolkit through which steps come.
#pragma once

#include <string>
#include <vector>

class QEvent;
class QObject;

// The last steps by name, the next to be taken first.
std::vector<std::string> stepnames(bool back);
void showsteps();  // enabling and tips
void wiresteps();
void stepby(int count, bool back);

// Can what the user does here change the model?
bool maychangemodel(QObject* receiver, const QEvent* event);
// Names the step under way by the dialog and button that are pressed.
void suggeststep(const QObject* receiver);
