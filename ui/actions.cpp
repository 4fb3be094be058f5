// SPDX-License-Identifier: GPL-3.0-or-later
// Finding and running actions, and the items made of them.
#include "ui/actions.h"

#include <algorithm>

#include "core/journal.h"
#include "core/session.h"
#include "edit/modes.h"
#include "ui/controlkinds.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"

std::vector<action>& actions() {
    static std::vector<action> table;
    return table;
}

action* findaction(const std::string& name) {
    const auto found = std::ranges::find(actions(), name, &action::name);
    return found == actions().end() ? nullptr : &*found;
}

QAction* menuaction(const char* array, int index) {
    const action* const row = findaction(std::string(array) + "(" + std::to_string(index) + ")");
    return row ? row->item.data() : nullptr;
}

// A caption without its mark of the key, dots and blanks at the end.
static std::string plaincaption(const char* caption) {
    std::string name = caption;
    std::erase(name, '&');
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.pop_back();
    return name;
}

// What fails returns to the rest state and tells why.
// The line of a script that does the same.
static QString lineof(const action& row) {
    if (row.unrecorded) return {};
    if (*row.menu == 0) return QString::fromStdString("press main " + row.name);
    const QString path = QString(row.menu).replace('|', '/') + "/" + row.caption;
    return "menu " + quotedword(plaintext(path));
}

static void runas(const action& row, const QString& line, const std::function<void()>& run) {
    const recordedline recorded(line);
    const step s(plaincaption(row.caption));
    guarded(run, fallback);
}

void runaction(const action& row) {
    runas(row, lineof(row), row.run);
}

void runlisted(const action& row, int number) {
    const QStringList lines(number, lineof(row));
    runas(row, lines.join('\n'), [&row, number] { row.runlisted(number); });
}

bool isheld() {
    return menulock || isselectionpending() || singleel;
}

// Shortcuts stay away with the menus.
bool islocked(const std::string& menu) {
    static const char* const locked[] = {"&File",   "&Edit",    "&Add",
                                         "&Define", "A&nalyse", "&Post-Process"};
    const std::string first = menu.substr(0, menu.find('|'));
    return isheld() && std::ranges::any_of(locked, [&](const char* name) { return first == name; });
}

bool isallowed(const action& row) {
    return row.run && (!row.enabled || row.enabled()) && !islocked(row.menu);
}

std::string reasonof(const action& row) {
    if (isallowed(row)) return {};
    if (!row.run) return "This is not there yet";
    if (menulock) return "Not while an analysis runs";
    if (isselectionpending()) return "A window waits for a selection: Enter or ESC brings it back";
    if (singleel) return "Not while the window of single elements picks nodes";
    return *row.why ? row.why : "Not possible at present";
}

static QString tipof(const action& row) {
    const QString tip =
        *row.tip ? QString::fromUtf8(row.tip) : QString::fromStdString(plaincaption(row.caption));
    // Items of the menus show their keys themselves.
    if (*row.keys == 0 || *row.menu != 0) return tip;
    return QString("%1 (%2)").arg(tip, QString(row.keys).section(';', 0, 0));
}

void showallowed(const action& row) {
    const std::string reason = reasonof(row);
    row.item->setEnabled(reason.empty());
    const QString tip = tipof(row);
    row.item->setToolTip(reason.empty() ? tip : tip + "\n" + QString::fromStdString(reason));
}

QAction* makeitem(action& row, QObject* parent) {
    auto* const item = new QAction(QString::fromUtf8(row.caption), parent);
    item->setObjectName(QString::fromStdString(row.name));
    if (*row.icon) item->setIcon(iconof(row.icon));
    if (*row.keys) item->setShortcuts(QKeySequence::listFromString(row.keys));
    item->setCheckable(bool(row.checked));
    item->setToolTip(tipof(row));
    if (row.run) QObject::connect(item, &QAction::triggered, item, [&row] { runaction(row); });
    row.item = item;
    return item;
}
