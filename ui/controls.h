// SPDX-License-Identifier: GPL-3.0-or-later
// Controls that the dialogs share: buttons, typed lists, and showing a form's texts without
// disturbing what the user has in hand.
#pragma once

#include <QString>
#include <string>
#include <vector>

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class QWidget;

QString qtext(const std::string& text);
QString lengthsaid();  // name of the model's length, empty where the model does not say it
// A name from a model or a path from the settings, cut where it is longer than a list can show.
QString qname(const std::string& name);
// As wide as its columns with their headings, in whatever letters, up to two thirds of the screen.
void widentable(QTableView* table);
// The button "Copy Table": all cells, with the headings where they show, as spreadsheets take them.
void addcopytable(const QTableView* table, QWidget* parent, QBoxLayout* row);
QPushButton* newbutton(const char* name, const char* caption, QWidget* parent, QBoxLayout* row);
// The line at the foot of a dialog that takes its remarks; it wraps where one is long.
QLabel* newmessageline(const char* name, QWidget* parent, QBoxLayout* rows);
// A list whose text can be typed over. The text is the user's own: leaving the field with the text
// of another entry does not choose that entry.
void maketyped(QComboBox* list);
// Shows entries, as qname does, and the chosen one; entries that are there already stay.
void showlist(QComboBox* list, const std::vector<std::string>& entries, int chosen);
// Sets a text, with the cursor left alone where it is there already. One too long for its box shows
// its beginning, sign and first digits. A name too long to be shown is kept whole behind its
// beginning: typedtext gives it until the user types over it.
void showtext(QLineEdit* box, const std::string& text);
std::string typedtext(const QLineEdit* box);
