// SPDX-License-Identifier: GPL-3.0-or-later
// Wiring of the floors.
#include "ui/startup.h"

#include <QContextMenuEvent>
#include <QLabel>
#include <QWidget>
#include <optional>

#include "core/journal.h"
#include "core/runtime.h"
#include "edit/Mouseprocedures.h"
#include "exchange/formats.h"
#include "loads/loadaxes.h"
#include "post/book.h"
#include "post/compare.h"
#include "post/convertplots.h"
#include "post/probes.h"
#include "post/shapes.h"
#include "tools/Graphics.h"
#include "tools/drafttools.h"
#include "tools/groupsection.h"
#include "tools/patchmesh.h"
#include "tools/pointentry.h"
#include "tools/qualitypicture.h"
#include "tools/singleelem.h"
#include "ui/balance.h"
#include "ui/dialogs.h"
#include "ui/record.h"
#include "ui/steps.h"
#include "view/moddraw.h"
#include "view/symbols.h"

void wiremodules() {
    initsymbols();
    wirelayers();
    wirequality();
    wiremouse();
    wiregraphics();
    wirepatches();
    wirepointentry();
    wiredrafttools();
    wireloadaxes();
    wiresingleelem();
    wirepost();
    wireprobes();
    wirecompare();
    wirebook();
    wireexchange();
    wiregroupsections();
    wiredialogs();
    wiresteps();
    wirebalance();
    wireconversion();
}

// Texts of labels come from files: names, comments, paths. Left to guess, a label would take one
// with a tag in it for a page and fetch its pictures. Each label, those of message boxes, tips and
// progress windows too, is polished before its text is laid out.
static void forceplaintext(QObject* receiver) {
    auto* const label = qobject_cast<QLabel*>(receiver);
    if (label && label->textFormat() == Qt::AutoText) label->setTextFormat(Qt::PlainText);
}

// Shift+F10 is the menu key of keyboards that have none, which the toolkit hears on one platform
// alone. The widget to open the menu of, null for any other event.
static QWidget* asksformenu(QObject* receiver, const QEvent* event) {
    QWidget* const focus = QApplication::focusWidget();
    if (event->type() != QEvent::KeyPress || receiver != focus) return nullptr;
    const auto* const key = static_cast<const QKeyEvent*>(event);
    const bool asks = key->key() == Qt::Key_F10 && key->modifiers() == Qt::ShiftModifier;
    return asks && QApplication::activePopupWidget() == nullptr ? focus : nullptr;
}

bool guardedapplication::notify(QObject* receiver, QEvent* event) {
    if (QWidget* const asked = asksformenu(receiver, event)) {
        const QPoint at = asked->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, asked->mapToGlobal(at));
        return notify(asked, &menu);
    }
    if (event->type() == QEvent::Polish) forceplaintext(receiver);
    bool taken = false;
    const recordedevent recorded(receiver, event);
    std::optional<step> change;
    if (maychangemodel(receiver, event)) {
        change.emplace("");
        suggeststep(receiver);
    }
    guarded([&] { taken = QApplication::notify(receiver, event); }, fallback);
    return taken;
}
