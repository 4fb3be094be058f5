// SPDX-License-Identifier: GPL-3.0-or-later
// Keys as a keyboard sends them, and the end of a script that can not go on.
#pragma once

#include <QString>

class QLineEdit;
class QWidget;

// A line that can not be carried out.
struct scriptfault {
    QString text;
};
[[noreturn]] void refuse(const QString& text);

// The widget that a key of the keyboard reaches: in an open menu, else in the window that holds up
// all others, else in the main window.
QWidget* keyboardfocus();
// A key at a widget, first as a shortcut of its window. Text is typed key by key.
void presskey(QWidget* w, int key, const QString& text = QString(),
              Qt::KeyboardModifiers held = Qt::NoModifier);
void typekeys(QWidget* w, const QString& text);
void type(QLineEdit* edit, const QString& value);
