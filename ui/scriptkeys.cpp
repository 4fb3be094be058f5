// SPDX-License-Identifier: GPL-3.0-or-later
// Keys of scripts.
#include "ui/scriptkeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>

#include "ui/mainwindow.h"

// The toolkit's own door for keys of a test, which tries the shortcuts.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject*, ulong timestamp, int key,
                                               Qt::KeyboardModifiers, const QString& text, bool,
                                               ushort);
QT_END_NAMESPACE

void refuse(const QString& text) {
    throw scriptfault{text};
}

QWidget* keyboardfocus() {
    QWidget* window = QApplication::activePopupWidget();
    if (window == nullptr) window = QApplication::activeModalWidget();
    if (window == nullptr) window = themainwindow;
    return window->focusWidget() ? window->focusWidget() : window;
}

void presskey(QWidget* w, int key, const QString& text, Qt::KeyboardModifiers held) {
    if (qt_sendShortcutOverrideEvent(w, 0, key, held, text, false, 1)) return;
    const QPointer<QWidget> target = w;  // a key may close its window
    for (const QEvent::Type kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(kind, key, held, text);
        if (target) QApplication::sendEvent(target, &event);
    }
}

void typekeys(QWidget* w, const QString& text) {
    for (const QChar c : text) presskey(w, 0, QString(c));
}

// Typed key by key over what was there. The keys go where the keyboard's go: to the list whose text
// the field is.
void type(QLineEdit* edit, const QString& value) {
    edit->setFocus();
    edit->selectAll();
    QWidget* const target = edit->focusProxy() ? edit->focusProxy() : edit;
    if (value.isEmpty()) presskey(target, Qt::Key_Delete);
    typekeys(target, value);
}
