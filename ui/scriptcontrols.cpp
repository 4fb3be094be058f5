// SPDX-License-Identifier: GPL-3.0-or-later
// Controls by name.
#include "ui/scriptcontrols.h"

#include <QAbstractButton>
#include <QApplication>
#include <QRegularExpression>

#include "ui/controlkinds.h"
#include "ui/controlnames.h"
#include "ui/mainwindow.h"

// --- finding windows and controls ---------------------------------------------------------------

static QWidget* findform(const QString& name) {
    if (name == "main") return themainwindow;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->objectName() == name) return w;
    refuse("no dialog " + name + " is open");
}

static QString captionof(const QObject* o) {
    if (const auto* b = qobject_cast<const QAbstractButton*>(o)) return plaintext(b->text());
    return {};
}

static QWidget* findcaption(const QWidget* window, const QString& caption) {
    for (QWidget* w : window->findChildren<QWidget*>())
        if (captionof(w) == plaintext(caption)) return w;
    return nullptr;
}

// "QLineEdit#3": the third of its class in the window.
static QWidget* numbered(const QWidget* window, const QString& name) {
    int number = name.section('#', 1).toInt();
    for (QWidget* w : window->findChildren<QWidget*>())
        if (name.section('#', 0, 0) == w->metaObject()->className() && --number == 0) return w;
    return nullptr;
}

QWidget* findcontrol(const QString& form, const QString& name) {
    QWidget* const window = findform(form);
    if (name == form) return window;
    if (auto* const w = window->findChild<QWidget*>(name)) return w;
    if (QWidget* const w = findcaption(window, name)) return w;
    if (QWidget* const w = numbered(window, name)) return w;
    refuse(form + " has no control " + name);
}

QString quotedword(const QString& text) {
    static const QRegularExpression plain("^[\\w.:+/&=-][\\w.:+/&=#()-]*$");
    if (plain.match(text).hasMatch() && text.count('(') == text.count(')')) return text;
    QString quoted = text;
    quoted.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
    return '"' + quoted + '"';
}

QString controlname(const QWidget* w) {
    QWidget* const window = w->window();
    const QString form = window == themainwindow ? QString("main") : window->objectName();
    const QString words = quotedword(form) + " ";
    if (w == window) return words + quotedword(form);
    if (const QString name = w->objectName();
        !name.isEmpty() && window->findChild<QWidget*>(name) == w)
        return words + quotedword(name);
    if (const QString caption = captionof(w);
        !caption.isEmpty() && findcaption(window, caption) == w)
        return words + quotedword(caption);
    int number = 0;
    for (const QWidget* other : window->findChildren<QWidget*>()) {
        number += other->metaObject() == w->metaObject();
        if (other == w) break;
    }
    return words + QString("%1#%2").arg(w->metaObject()->className()).arg(number);
}

static void needenabled(const QWidget* w, const QString& name) {
    if (!w->isEnabled()) refuse(name + " is disabled");
    if (!w->isVisible()) refuse(name + " is hidden");
}

// --- verbs --------------------------------------------------------------------------------------

QStringList controllines(const QString& form) {
    QStringList lines;
    for (const QWidget* w : findcontrol(form, form)->findChildren<QWidget*>()) {
        const controlkind* const kind = kindofcontrol(w);
        if (!kind || w->objectName().startsWith("qt_")) continue;
        const QString shows = kind->value ? kind->value(w) : QString();
        lines << QString("%1 | %2 | %3 | %4")
                     .arg(controlname(w), QString(w->metaObject()->className()).remove('Q'),
                          nameofcontrol(w), shows);
    }
    return lines;
}

void setcontrol(const QString& form, const QString& name, const QString& value) {
    QWidget* const w = findcontrol(form, name);
    needenabled(w, name);
    const controlkind* const kind = kindofcontrol(w);
    if (!kind || !kind->set) refuse(name + " of " + form + " takes no text");
    kind->set(w, value);
}

void choose(const QString& form, const QString& name, const QString& text) {
    QWidget* const w = findcontrol(form, name);
    needenabled(w, name);
    const controlkind* const kind = kindofcontrol(w);
    if (!kind || !kind->entries) refuse(name + " of " + form + " is no list");
    const QStringList entries = kind->entries(w);
    int entry = int(entries.indexOf(text));
    if (entry < 0 && text.startsWith('#')) entry = text.mid(1).toInt() - 1;  // by its number
    if (entry >= entries.size()) entry = -1;
    if (entry < 0) refuse(name + " holds no entry \"" + text + "\"");
    kind->choose(w, entry);
}

void checkcontrol(const QString& form, const QString& name, bool on) {
    auto* const b = findkind<QAbstractButton>(form, name, "check box or option");
    needenabled(b, name);
    if (b->isChecked() != on) b->click();
}

void presscontrol(const QString& form, const QString& name) {
    if (form == "main")
        if (auto* const action = themainwindow->findChild<QAction*>(name)) {
            if (!action->isEnabled()) refuse(name + " is disabled");
            action->trigger();
            return;
        }
    auto* const b = findkind<QAbstractButton>(form, name, "button");
    needenabled(b, name);
    b->click();
}

// --- values -------------------------------------------------------------------------------------

bool controlvalue(const QString& name, QString& value) {
    const qsizetype dot = name.indexOf('.');
    if (dot < 0) return false;
    const QWidget* const w = findcontrol(name.left(dot), name.mid(dot + 1));
    const controlkind* const kind = kindofcontrol(w);
    if (!w->isVisible()) {
        value = "hidden";
    } else {
        if (!kind || !kind->value) return false;
        value = kind->value(w);
    }
    return true;
}
