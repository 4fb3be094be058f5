// SPDX-License-Identifier: GPL-3.0-or-later
// The table of kinds of controls.
#include "ui/controlkinds.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFontDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSlider>
#include <QSpinBox>
#include <QTabBar>
#include <vector>

#include "ui/scriptkeys.h"

QString plaintext(QString caption) {
    return caption.remove('&').trimmed();
}

namespace {

// The field in which a grid, a list or a number field is typed is theirs.
bool isinner(const QWidget* w) {
    const QWidget* const above = w->parentWidget();
    return qobject_cast<const QAbstractSpinBox*>(above) || qobject_cast<const QComboBox*>(above) ||
           qobject_cast<const QAbstractItemView*>(above ? above->parentWidget() : nullptr);
}

void leave(QLineEdit* edit) {
    if (edit->hasFocus())
        edit->clearFocus();
    else
        QMetaObject::invokeMethod(edit, "editingFinished");
}

template <typename T>
T* as(QWidget* w) {
    return static_cast<T*>(w);
}
template <typename T>
const T* as(const QWidget* w) {
    return static_cast<const T*>(w);
}

template <typename T>
controlkind kindof() {
    controlkind kind;
    kind.of = &T::staticMetaObject;
    return kind;
}

controlkind textfield() {
    auto kind = kindof<QLineEdit>();
    kind.set = [](QWidget* w, const QString& text) {
        type(as<QLineEdit>(w), text);
        leave(as<QLineEdit>(w));
    };
    kind.value = [](const QWidget* w) { return as<QLineEdit>(w)->text(); };
    kind.watch = [](QWidget* w, usersigns& user) {
        if (isinner(w)) return;
        QObject::connect(as<QLineEdit>(w), &QLineEdit::textEdited, w,
                         [w, &user](const QString& text) { user.typed(w, text); });
    };
    return kind;
}

controlkind dropdown() {
    auto kind = kindof<QComboBox>();
    kind.set = [](QWidget* w, const QString& text) {
        QLineEdit* const edit = as<QComboBox>(w)->lineEdit();
        if (!edit) refuse(w->objectName() + " takes no text");
        type(edit, text);
        leave(edit);
    };
    kind.entries = [](const QWidget* w) {
        QStringList texts;
        for (int i = 0; i < as<QComboBox>(w)->count(); ++i) texts << as<QComboBox>(w)->itemText(i);
        return texts;
    };
    kind.choose = [](QWidget* w, int i) {
        auto* const list = as<QComboBox>(w);
        const QString text = list->itemText(i);
        list->setCurrentIndex(i);
        emit list->activated(i);
        emit list->textActivated(text);
    };
    kind.value = [](const QWidget* w) { return as<QComboBox>(w)->currentText(); };
    kind.watch = [](QWidget* w, usersigns& user) {
        if (isinner(w)) return;
        QObject::connect(as<QComboBox>(w), &QComboBox::activated, w,
                         [w, &user](int i) { user.chose(w, i); });
        if (QLineEdit* const edit = as<QComboBox>(w)->lineEdit())
            QObject::connect(edit, &QLineEdit::textEdited, w,
                             [w, &user](const QString& text) { user.typed(w, text); });
    };
    return kind;
}

controlkind listbox() {
    auto kind = kindof<QListWidget>();
    kind.entries = [](const QWidget* w) {
        QStringList texts;
        for (int i = 0; i < as<QListWidget>(w)->count(); ++i)
            texts << as<QListWidget>(w)->item(i)->text();
        return texts;
    };
    kind.choose = [](QWidget* w, int i) {
        auto* const list = as<QListWidget>(w);
        list->setCurrentRow(i);
        emit list->itemClicked(list->item(i));
    };
    kind.value = [](const QWidget* w) { return kindofcontrol(w)->entries(w).join('|'); };
    kind.watch = [](QWidget* w, usersigns& user) {
        const auto* const list = as<QListWidget>(w);
        QObject::connect(list, &QListWidget::currentRowChanged, w, [w, &user](int row) {
            if (user.isat(w) && row >= 0) user.chose(w, row);
        });
        QObject::connect(
            list, &QListWidget::itemClicked, w,
            [w, list, &user](const QListWidgetItem* item) { user.chose(w, list->row(item)); });
    };
    return kind;
}

template <typename T>
controlkind pages() {
    auto kind = kindof<T>();
    kind.entries = [](const QWidget* w) {
        QStringList texts;
        for (int i = 0; i < as<T>(w)->count(); ++i) texts << plaintext(as<T>(w)->tabText(i));
        return texts;
    };
    kind.choose = [](QWidget* w, int i) { as<T>(w)->setCurrentIndex(i); };
    kind.value = [](const QWidget* w) {
        return plaintext(as<T>(w)->tabText(as<T>(w)->currentIndex()));
    };
    kind.watch = [](QWidget* w, usersigns& user) {
        QObject::connect(as<T>(w), &T::currentChanged, w, [w, &user](int page) {
            if (user.isat(w)) user.chose(w, page);
        });
    };
    return kind;
}

template <typename T>
controlkind numberfield() {
    auto kind = kindof<T>();
    kind.set = [](QWidget* w, const QString& text) { as<T>(w)->setValue(text.toInt()); };
    kind.value = [](const QWidget* w) { return QString::number(as<T>(w)->value()); };
    kind.watch = [](QWidget* w, usersigns& user) {
        // The bars of lists and texts move what is seen of them, no more.
        if (w->parentWidget() && w->parentWidget()->objectName().startsWith("qt_scrollarea"))
            return;
        QObject::connect(as<T>(w), &T::valueChanged, w, [w, &user](int value) {
            if (user.isat(w)) user.typed(w, QString::number(value));
        });
    };
    return kind;
}

controlkind textpage() {
    auto kind = kindof<QPlainTextEdit>();
    kind.set = [](QWidget* w, const QString& text) { as<QPlainTextEdit>(w)->setPlainText(text); };
    kind.value = [](const QWidget* w) { return as<QPlainTextEdit>(w)->toPlainText(); };
    kind.watch = [](QWidget* w, usersigns& user) {
        QObject::connect(as<QPlainTextEdit>(w), &QPlainTextEdit::textChanged, w, [w, &user] {
            if (user.isat(w)) user.typed(w, as<QPlainTextEdit>(w)->toPlainText());
        });
    };
    return kind;
}

controlkind fontchoice() {
    auto kind = kindof<QFontDialog>();
    kind.set = [](QWidget* w, const QString& text) {
        QFont font;
        if (!font.fromString(text)) refuse("\"" + text + "\" is no font");
        as<QFontDialog>(w)->setCurrentFont(font);
    };
    kind.value = [](const QWidget* w) { return as<QFontDialog>(w)->currentFont().toString(); };
    return kind;
}

controlkind colourchoice() {
    auto kind = kindof<QColorDialog>();
    kind.set = [](QWidget* w, const QString& text) {
        if (!QColor::isValidColor(text)) refuse("\"" + text + "\" is no colour");
        as<QColorDialog>(w)->setCurrentColor(QColor(text));
    };
    kind.value = [](const QWidget* w) { return as<QColorDialog>(w)->currentColor().name(); };
    return kind;
}

// The tabs of a page control are its own.
controlkind tabs() {
    auto kind = pages<QTabBar>();
    kind.watch = [](QWidget* w, usersigns& user) {
        if (qobject_cast<QTabWidget*>(w->parentWidget())) return;
        pages<QTabBar>().watch(w, user);
    };
    return kind;
}

controlkind button() {
    auto kind = kindof<QAbstractButton>();
    kind.value = [](const QWidget* w) -> QString {
        const auto* const b = as<QAbstractButton>(w);
        return b->isCheckable() ? (b->isChecked() ? "-1" : "0") : b->text();
    };
    kind.watch = [](QWidget* w, usersigns& user) {
        QObject::connect(as<QAbstractButton>(w), &QAbstractButton::released, w,
                         [w, &user] { user.pressing(w); });
        QObject::connect(as<QAbstractButton>(w), &QAbstractButton::clicked, w,
                         [w, &user] { user.pressed(w); });
    };
    return kind;
}

controlkind label() {
    auto kind = kindof<QLabel>();
    kind.value = [](const QWidget* w) { return as<QLabel>(w)->text(); };
    return kind;
}

controlkind frame() {
    auto kind = kindof<QGroupBox>();
    kind.value = [](const QWidget* w) { return as<QGroupBox>(w)->title(); };
    return kind;
}

}  // namespace

// The first row that fits counts.
static const std::vector<controlkind>& controlkinds() {
    static const std::vector<controlkind> rows = {
        textfield(),
        dropdown(),
        listbox(),
        tabs(),
        pages<QTabWidget>(),
        numberfield<QSpinBox>(),
        numberfield<QAbstractSlider>(),
        textpage(),
        fontchoice(),
        colourchoice(),
        button(),
        label(),
        frame(),
    };
    return rows;
}

const controlkind* kindofcontrol(const QWidget* w) {
    for (const controlkind& kind : controlkinds())
        if (w->metaObject()->inherits(kind.of)) return &kind;
    return nullptr;
}
