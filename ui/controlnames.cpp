// SPDX-License-Identifier: GPL-3.0-or-later
// Labels looked up in the layouts, which know them before anything is shown.
#include "ui/controlnames.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHash>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QToolButton>
#include <algorithm>

#include "ui/controlkinds.h"

static QString wordsof(QString text) {
    text = plaintext(text).simplified();
    while (text.endsWith(':') || text.endsWith('.') || text.endsWith('=') || text.endsWith(' '))
        text.chop(1);
    return text;
}

static QString labeltext(QLayoutItem* item) {
    const auto* const label = item ? qobject_cast<const QLabel*>(item->widget()) : nullptr;
    return label ? wordsof(label->text()) : QString();
}

// The row's label, then the column's: "Element Type From".
static QString labelin(const QGridLayout* grid, int index) {
    int row = 0, column = 0, rows = 0, columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    QStringList found;
    for (int c = column - 1; c >= 0 && found.empty(); --c)
        if (const QString text = labeltext(grid->itemAtPosition(row, c)); !text.isEmpty())
            found << text;
    for (int r = row - 1, n = int(found.size()); r >= 0 && int(found.size()) == n; --r)
        if (const QString text = labeltext(grid->itemAtPosition(r, column)); !text.isEmpty())
            found << text;
    return found.join(' ');
}

// What stands last before it in a row or column.
static QString labelin(const QBoxLayout* box, int index) {
    for (int i = index - 1; i >= 0; --i)
        if (const QString text = labeltext(box->itemAt(i)); !text.isEmpty()) return text;
    return {};
}

// Does the control stand in the item, in a layout of layouts at any depth?
static bool holds(QLayoutItem* item, const QWidget* control) {
    if (item->widget() == control) return true;
    const QLayout* const inner = item->layout();
    for (int i = 0; inner && i < inner->count(); ++i)
        if (holds(inner->itemAt(i), control)) return true;
    return false;
}

// The nearest label before a control, in the innermost layout that has one.
static QString labelfrom(const QLayout* layout, const QWidget* control) {
    for (int i = 0; layout && i < layout->count(); ++i) {
        QLayoutItem* const item = layout->itemAt(i);
        if (!holds(item, control)) continue;
        if (const QString text = labelfrom(item->layout(), control); !text.isEmpty()) return text;
        if (const auto* form = qobject_cast<const QFormLayout*>(layout)) {
            const auto* const label =
                qobject_cast<const QLabel*>(form->labelForField(const_cast<QWidget*>(control)));
            return label ? wordsof(label->text()) : QString();
        }
        if (const auto* grid = qobject_cast<const QGridLayout*>(layout)) return labelin(grid, i);
        if (const auto* box = qobject_cast<const QBoxLayout*>(layout)) return labelin(box, i);
    }
    return {};
}

static QString labelaround(const QWidget* control) {
    for (const QWidget* around = control->parentWidget(); around; around = around->parentWidget()) {
        if (const QString text = labelfrom(around->layout(), control); !text.isEmpty()) return text;
        if (const auto* frame = qobject_cast<const QGroupBox*>(around))
            if (!frame->title().isEmpty()) return wordsof(frame->title());
        if (around->isWindow()) break;
        control = around;
    }
    return {};
}

QString nameofcontrol(const QWidget* control) {
    if (!control->accessibleName().isEmpty()) return control->accessibleName();
    const auto* const button = qobject_cast<const QAbstractButton*>(control);
    return button ? wordsof(button->text()) : QString();
}

void namecontrols(QWidget* window) {
    QHash<const QWidget*, QString> buddies;
    for (const auto* label : window->findChildren<QLabel*>())
        if (label->buddy()) buddies[label->buddy()] = wordsof(label->text());
    for (QWidget* control : window->findChildren<QWidget*>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || !kindofcontrol(control)) continue;
        if (!nameofcontrol(control).isEmpty()) continue;
        const QString tip = wordsof(control->toolTip().section('\n', 0, 0));
        for (const QString& name :
             {buddies.value(control), labelaround(control), tip, wordsof(window->windowTitle())}) {
            control->setAccessibleName(name);
            if (!name.isEmpty()) break;
        }
    }
}

// --- keys ---------------------------------------------------------------------------------------

static QChar keyof(const QString& caption) {
    const QString key = QKeySequence::mnemonic(caption).toString();
    return key.isEmpty() ? QChar() : key.back().toUpper();
}

// The first letter of a word that no other control has, else any letter of it; -1 for none.
static int freeletter(const QString& caption, const QSet<QChar>& taken) {
    const auto isfree = [&](int i) {
        const QChar c = caption[i];
        return c.isLetter() && c.unicode() < 128 && !taken.contains(c.toUpper());
    };
    for (int i = 0; i < caption.size(); ++i)
        if ((i == 0 || caption[i - 1] == ' ') && isfree(i)) return i;
    for (int i = 0; i < caption.size(); ++i)
        if (isfree(i)) return i;
    return -1;
}

// Enter and Esc press these.
static bool haskeys(const QString& caption) {
    static const QStringList known = {"OK", "Ok", "Cancel", "Ready", "Close"};
    return known.contains(caption);
}

static QLabel* labelof(QLayoutItem* item) {
    return item ? qobject_cast<QLabel*>(item->widget()) : nullptr;
}

// The label right before a control in a row of the innermost layout.
static QLabel* labelbeside(QLayout* layout, QWidget* control) {
    for (int i = 0; layout && i < layout->count(); ++i) {
        QLayoutItem* const item = layout->itemAt(i);
        if (QLabel* const found = labelbeside(item->layout(), control)) return found;
        if (item->widget() != control) continue;
        if (auto* const form = qobject_cast<QFormLayout*>(layout))
            return qobject_cast<QLabel*>(form->labelForField(control));
        if (auto* const grid = qobject_cast<QGridLayout*>(layout)) {
            int row = 0, column = 0, rows = 0, columns = 0;
            grid->getItemPosition(i, &row, &column, &rows, &columns);
            return column > 0 ? labelof(grid->itemAtPosition(row, column - 1)) : nullptr;
        }
        return i > 0 ? labelof(layout->itemAt(i - 1)) : nullptr;
    }
    return nullptr;
}

static void adoptlabels(QWidget* window) {
    for (QWidget* control : window->findChildren<QWidget*>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || qobject_cast<QAbstractButton*>(control))
            continue;
        QLabel* const label = labelbeside(control->parentWidget()->layout(), control);
        if (label && !label->buddy()) label->setBuddy(control);
    }
}

void givekeys(QWidget* window) {
    adoptlabels(window);
    QList<QWidget*> without;
    QSet<QChar> taken;
    for (QWidget* w : window->findChildren<QWidget*>()) {
        const auto* const label = qobject_cast<QLabel*>(w);
        const auto* const button = qobject_cast<QAbstractButton*>(w);
        if (w->window() != window || (!button && !(label && label->buddy()))) continue;
        if (const auto* tool = qobject_cast<QToolButton*>(w); tool && tool->text().isEmpty())
            continue;
        const QString caption = button ? button->text() : label->text();
        if (const QChar key = keyof(caption); !key.isNull())
            taken << key;
        else if (!caption.contains('&') && !haskeys(caption))
            without << w;
    }
    // Where there are more than letters, buttons have theirs first.
    std::ranges::stable_sort(without, {}, [](const QWidget* w) {
        return qobject_cast<const QPushButton*>(w) ? 0 : qobject_cast<const QLabel*>(w) ? 2 : 1;
    });
    for (QWidget* w : without) {
        auto* const label = qobject_cast<QLabel*>(w);
        auto* const button = qobject_cast<QAbstractButton*>(w);
        QString caption = button ? button->text() : label->text();
        const int at = freeletter(caption, taken);
        if (at < 0) continue;
        taken << caption[at].toUpper();
        caption.insert(at, '&');
        button ? button->setText(caption) : label->setText(caption);
    }
}
