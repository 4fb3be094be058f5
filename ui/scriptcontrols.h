// SPDX-License-Identifier: GPL-3.0-or-later
// What a script does to the controls of windows, found by their names or captions, and what it
// reads from them.
#pragma once

#include <QString>

#include "ui/scriptkeys.h"

class QWidget;

// A text as a word of a line, in quotes where it needs them.
QString quotedword(const QString& text);
// "FORM CONTROL" as findcontrol takes them: by name, else by caption, else "CLASS#NUMBER".
QString controlname(const QWidget* w);
// A control of an open window; form "main" is the main window. Refuses where there is none.
QWidget* findcontrol(const QString& form, const QString& name);
template <typename T>
T* findkind(const QString& form, const QString& name, const char* kind) {
    T* const w = qobject_cast<T*>(findcontrol(form, name));
    if (w == nullptr) refuse(name + " of " + form + " is no " + kind);
    return w;
}

// A line a control of an open window: its words in scripts, its kind, what it is called and shows.
QStringList controllines(const QString& form);

void setcontrol(const QString& form, const QString& name, const QString& value);
void choose(const QString& form, const QString& name, const QString& text);
void checkcontrol(const QString& form, const QString& name, bool on);
void presscontrol(const QString& form, const QString& name);

// What a control of an open window shows, by the name "FORM.CONTROL"; "hidden" where it is.
bool controlvalue(const QString& name, QString& value);
