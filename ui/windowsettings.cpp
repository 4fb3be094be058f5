// SPDX-License-Identifier: GPL-3.0-or-later
// The file of the window's settings.
#include "ui/windowsettings.h"

#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <algorithm>

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

static QStringList keptfiles() {
    return windowsettings().value("recent").toStringList();
}

std::vector<std::string> rememberedfiles() {
    std::vector<std::string> files;
    for (const QString& file : keptfiles())
        if (QFileInfo::exists(file + ".tek") || QFileInfo(file).isFile())
            files.push_back(file.toStdString());
    return files;
}

void rememberfiles(const std::vector<std::string>& files) {
    static std::vector<std::string> written;
    if (files == written) return;
    written = files;
    const qsizetype most = 10;
    QStringList list = keptfiles();
    for (const std::string& file : files)
        if (!list.contains(QString::fromStdString(file))) list << QString::fromStdString(file);
    if (list != keptfiles())
        windowsettings().setValue("recent", list.last(std::min(most, list.size())));
}
