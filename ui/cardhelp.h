// SPDX-License-Identifier: GPL-3.0-or-later
// The window behind the command "help" and behind the buttons "Card...": the direct commands in
// short, and the cards of the element types.
#pragma once

class QComboBox;
class QDialog;
class QPushButton;
class QWidget;

QDialog* makecardhelp();  // at the commands
// A button that opens the card of the type that the list has then.
QPushButton* newcardbutton(QWidget* parent, const QComboBox* types);
