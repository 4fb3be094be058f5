// SPDX-License-Identifier: GPL-3.0-or-later
// The button "Pick" of a window that works on the selection: the window hides, presses in the views
// select items of one kind, and Enter, ESC or the right button bring the window back.
#pragma once

#include <QPushButton>
#include <functional>

#include "ui/dialogs.h"

class pickbutton : public QPushButton {
  public:
    // item: of the Select menu; picked: called when the window is back.
    pickbutton(QDialog* dialog, int item, std::function<void()> picked);

  private:
    void begin();
    void end();
    QDialog* const dialog;
    const int item;
    const std::function<void()> picked;
    Flag pending{false};
    selectionwait waiting{pending, [this] { end(); }};
};
