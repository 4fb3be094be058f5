// SPDX-License-Identifier: GPL-3.0-or-later
// The kinds of controls that windows are made of, as one table: what a script does to each, what it
// reads from it, and by which signs a recording knows what the user did.
#pragma once

#include <QMetaObject>
#include <QString>
#include <QStringList>

class QWidget;

// What the user did at a control.
struct usersigns {
    virtual ~usersigns() = default;
    virtual bool isat(const QWidget* w) const = 0;  // is it the user who works at it now?
    virtual void typed(QWidget* w, const QString& text) = 0;
    virtual void chose(QWidget* w, int entry) = 0;
    virtual void pressing(QWidget* w) = 0;  // a button, before it acts
    virtual void pressed(QWidget* w) = 0;   // it has acted
};

struct controlkind {
    const QMetaObject* of = nullptr;
    void (*set)(QWidget*, const QString&) = nullptr;   // null: it takes no text
    QStringList (*entries)(const QWidget*) = nullptr;  // null: it is no list
    void (*choose)(QWidget*, int entry) = nullptr;
    QString (*value)(const QWidget*) = nullptr;  // null: it shows nothing
    void (*watch)(QWidget*, usersigns&) = nullptr;
};
// Null where the table has no row for it.
const controlkind* kindofcontrol(const QWidget* w);

// A text without the mark of its key.
QString plaintext(QString caption);
