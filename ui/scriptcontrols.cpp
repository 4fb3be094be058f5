// SPDX-License-Identifier: GPL-3.0-or-later
// Controls by name.
#include "ui/scriptcontrols.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSlider>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>

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

// --- finding windows and controls ---------------------------------------------------------------

static QString plain(QString caption) {
    return caption.remove('&').trimmed();
}

static QWidget* findform(const QString& name) {
    if (name == "main") return themainwindow;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->objectName() == name) return w;
    refuse("no dialog " + name + " is open");
}

static QString captionof(const QObject* o) {
    if (const auto* b = qobject_cast<const QAbstractButton*>(o)) return plain(b->text());
    return {};
}

QWidget* findcontrol(const QString& form, const QString& name) {
    QWidget* const window = findform(form);
    if (auto* const w = window->findChild<QWidget*>(name)) return w;
    for (QWidget* w : window->findChildren<QWidget*>())
        if (captionof(w) == plain(name)) return w;
    refuse(form + " has no control " + name);
}

static void needenabled(const QWidget* w, const QString& name) {
    if (!w->isEnabled()) refuse(name + " is disabled");
    if (!w->isVisible()) refuse(name + " is hidden");
}

// --- verbs --------------------------------------------------------------------------------------

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

static void leave(QLineEdit* edit) {
    if (edit->hasFocus())
        edit->clearFocus();
    else
        QMetaObject::invokeMethod(edit, "editingFinished");
}

void setcontrol(const QString& form, const QString& name, const QString& value) {
    QWidget* const w = findcontrol(form, name);
    needenabled(w, name);
    if (auto* const edit = qobject_cast<QLineEdit*>(w)) {
        type(edit, value);
        leave(edit);
    } else if (auto* const combo = qobject_cast<QComboBox*>(w); combo && combo->isEditable()) {
        type(combo->lineEdit(), value);
        leave(combo->lineEdit());
    } else if (auto* const spin = qobject_cast<QSpinBox*>(w)) {
        spin->setValue(value.toInt());
    } else if (auto* const slider = qobject_cast<QAbstractSlider*>(w)) {
        slider->setValue(value.toInt());
    } else if (auto* const text = qobject_cast<QPlainTextEdit*>(w)) {
        text->setPlainText(value);
    } else {
        refuse(name + " of " + form + " takes no text");
    }
}

void choose(const QString& form, const QString& name, const QString& text) {
    QWidget* const w = findcontrol(form, name);
    needenabled(w, name);
    if (auto* const combo = qobject_cast<QComboBox*>(w)) {
        const int i = combo->findText(text);
        if (i < 0) refuse(name + " holds no entry \"" + text + "\"");
        combo->setCurrentIndex(i);
        emit combo->activated(i);
        emit combo->textActivated(text);
    } else if (auto* const list = qobject_cast<QListWidget*>(w)) {
        const auto items = list->findItems(text, Qt::MatchExactly);
        if (items.isEmpty()) refuse(name + " holds no entry \"" + text + "\"");
        list->setCurrentItem(items.first());
        emit list->itemClicked(items.first());
    } else if (auto* const tabs = qobject_cast<QTabBar*>(w)) {
        for (int i = 0; i < tabs->count(); ++i)
            if (plain(tabs->tabText(i)) == plain(text)) return tabs->setCurrentIndex(i);
        refuse(name + " has no page \"" + text + "\"");
    } else if (auto* const pages = qobject_cast<QTabWidget*>(w)) {
        for (int i = 0; i < pages->count(); ++i)
            if (plain(pages->tabText(i)) == plain(text)) return pages->setCurrentIndex(i);
        refuse(name + " has no page \"" + text + "\"");
    } else {
        refuse(name + " of " + form + " is no list");
    }
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

void setcell(const QString& form, const QString& name, int row, int column, const QString& value) {
    auto* const grid = findkind<QTableView>(form, name, "grid");
    const QModelIndex cell = grid->model()->index(row, column);
    if (!cell.isValid()) refuse(QString("%1 has no cell %2, %3").arg(name).arg(row).arg(column));
    if (!(cell.flags() & Qt::ItemIsEditable))
        refuse(QString("cell %1, %2 of %3 is not typed over").arg(row).arg(column).arg(name));
    grid->setCurrentIndex(cell);
    grid->model()->setData(cell, value, Qt::EditRole);
}

// --- values -------------------------------------------------------------------------------------

static QStringList textsof(const QListWidget* list) {
    QStringList rows;
    for (int i = 0; i < list->count(); ++i) rows << list->item(i)->text();
    return rows;
}

bool controlvalue(const QString& name, QString& value) {
    const qsizetype dot = name.indexOf('.');
    if (dot < 0) return false;
    const QWidget* const w = findcontrol(name.left(dot), name.mid(dot + 1));
    if (!w->isVisible())
        value = "hidden";
    else if (const auto* label = qobject_cast<const QLabel*>(w))
        value = label->text();
    else if (const auto* edit = qobject_cast<const QLineEdit*>(w))
        value = edit->text();
    else if (const auto* combo = qobject_cast<const QComboBox*>(w))
        value = combo->currentText();
    else if (const auto* group = qobject_cast<const QGroupBox*>(w))
        value = group->title();
    else if (const auto* list = qobject_cast<const QListWidget*>(w))
        value = textsof(list).join('|');
    else if (const auto* b = qobject_cast<const QAbstractButton*>(w))
        value = b->isCheckable() ? (b->isChecked() ? "-1" : "0") : b->text();
    else
        return false;
    return true;
}
