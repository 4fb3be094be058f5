// SPDX-License-Identifier: GPL-3.0-or-later
// The manual: F1 in a window or on a menu item, its opening in a browser, and the window with
// contents, index and search that shows it without one.
//
// Anchors of the manual are names of the program: "do-NAME" for a row of the table of actions,
// "window-NAME" for a window, beside those of its chapters.
#pragma once

#include <QUrl>
#include <string>

class QDialog;

// Opens the help window at an anchor of the manual, or where it is open moves it there.
void showhelp(const QUrl& page);
void helpat(const std::string& anchor, const std::string& otherwise = "window");
// The anchor of what goes on in the main window.
std::string topicnow();

// The whole manual in a browser; in the help window where none can be started.
void openmanual();
void helpbykey(QDialog* dialog);  // by the dialog's name
// Of a script; what is done in the window afterwards is recorded as in any other.
const char* const helpline = "press main contexthelp";
