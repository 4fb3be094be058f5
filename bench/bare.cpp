// SPDX-License-Identifier: GPL-3.0-or-later
// A bare widgets window that ends as soon as it shows: the yardstick of the program's start.
#include <QApplication>
#include <QMainWindow>
#include <QTimer>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1280, 860);
    window.show();
    QTimer::singleShot(0, &application, &QApplication::quit);
    return QApplication::exec();
}
