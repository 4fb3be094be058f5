// SPDX-License-Identifier: GPL-3.0-or-later
// The dialogs by name: opening one by its form name, and what they share.
#pragma once

#include <QDialog>
#include <functional>
#include <string>

// Opens the dialog of this form name over the main window; false when there is none.
bool opendialog(const std::string& name);
// Registers a dialog; each dialog's file does it once through wiredialogs.
void adddialog(const std::string& name, std::function<QDialog*()> make);
void wiredialogs();

// Shows a dialog without holding up the caller: the main window is disabled until it closes.
void showmodal(QDialog* dialog);

// One maker a dialog.
QDialog* makesetmem();
QDialog* makeaoptions();
QDialog* makeabout();
QDialog* makeinfo();
QDialog* makemodelinfo();
