// SPDX-License-Identifier: GPL-3.0-or-later
// The manual: F1 in a dialog or on a menu item, its opening at a topic, and the window that shows
// it where no browser can be started and while a script plays.
#pragma once

#include <QUrl>
#include <string>

class QDialog;

void showhelp(const QUrl& page);

// The manual, at a topic of it.
void openmanual(const std::string& topic = "");
// Of the action that runs; "" while none does. A dialog that it opens leads there by F1.
extern std::string helptopic;
void helpbykey(QDialog* dialog, const std::string& topic);
