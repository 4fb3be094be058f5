// SPDX-License-Identifier: GPL-3.0-or-later
// What a script does to the controls of windows, found by their names or captions, and what it
// reads from them.
#pragma once

#include <QString>

class QComboBox;
class QLineEdit;
class QWidget;

// A line that can not be carried out.
struct scriptfault {
    QString text;
};
[[noreturn]] void refuse(const QString& text);

// A control of an open window; form "main" is the main window. Refuses where there is none.
QWidget* findcontrol(const QString& form, const QString& name);
template <typename T>
T* findkind(const QString& form, const QString& name, const char* kind) {
    T* const w = qobject_cast<T*>(findcontrol(form, name));
    if (w == nullptr) refuse(name + " of " + form + " is no " + kind);
    return w;
}

// The widget that a key of the keyboard reaches: in an open menu, else in the window that holds up
// all others, else in the main window.
QWidget* keyboardfocus();
// A key at a widget, first as a shortcut of its window. Text is typed key by key.
void presskey(QWidget* w, int key, const QString& text = QString(),
              Qt::KeyboardModifiers held = Qt::NoModifier);
void typekeys(QWidget* w, const QString& text);
void type(QLineEdit* edit, const QString& value);

void setcontrol(const QString& form, const QString& name, const QString& value);
void choose(const QString& form, const QString& name, const QString& text);
void checkcontrol(const QString& form, const QString& name, bool on);
void presscontrol(const QString& form, const QString& name);
void setcell(const QString& form, const QString& name, int row, int column, const QString& value);

// What a control of an open window shows, by the name "FORM.CONTROL"; "hidden" where it is.
bool controlvalue(const QString& name, QString& value);
