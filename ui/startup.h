// SPDX-License-Identifier: GPL-3.0-or-later
// What every program with the main window does first: it hangs the floors together and guards the
// toolkit's handlers.
#pragma once

#include <QApplication>

// What the floors hang into the tables of the floors below them.
void wiremodules();

// What fails in a handler of the toolkit ends that handler, not the program; and the text of a
// label is plain unless it was asked to be a page.
class guardedapplication : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
};
