// SPDX-License-Identifier: GPL-3.0-or-later
// Hiding, selecting, coming back.
#include "ui/pickbutton.h"

#include "core/session.h"
#include "edit/move.h"

pickbutton::pickbutton(QDialog* of, int kind, std::function<void()> done)
    : QPushButton("&Pick", of), dialog(of), item(kind), picked(std::move(done)) {
    setObjectName("Pick");
    setAutoDefault(false);
    setToolTip(tr("Select in the views; Enter or ESC brings this window back"));
    connect(this, &QPushButton::clicked, this, guardedhandler([this](bool) { begin(); }));
}

void pickbutton::begin() {
    if (!MnuSelectItem(item).checked) setselectitem(item);
    pending = true;
    dialog->hide();
    prompt("Select", item == 0 ? "nodes" : "elements", "",
           "<Enter> or <ESC> to return to the window");
    textcaption();
}

void pickbutton::end() {
    pending = false;
    readyprompt();
    textcaption();
    showmodal(dialog);
    picked();
}
