// SPDX-License-Identifier: GPL-3.0-or-later
// The file of the window's settings.
#include "ui/windowsettings.h"

#include <QDir>
#include <QMainWindow>

#include "core/session.h"

QSettings windowsettings() {
    return QSettings(QDir(QString::fromStdString(appdir)).filePath("window.ini"),
                     QSettings::IniFormat);
}

bool restorewindow(QMainWindow& window) {
    const QSettings kept = windowsettings();
    window.restoreState(kept.value("window/state").toByteArray());
    return window.restoreGeometry(kept.value("window/geometry").toByteArray());
}

void rememberwindow(const QMainWindow& window) {
    QSettings kept = windowsettings();
    kept.setValue("window/state", window.saveState());
    kept.setValue("window/geometry", window.saveGeometry());
}
