// SPDX-License-Identifier: GPL-3.0-or-later
// The file of the window's settings.
#include "ui/windowsettings.h"

#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <algorithm>

#include "core/journal.h"
#include "core/newmodel.h"
#include "core/session.h"
#include "core/units.h"
#include "ui/controls.h"
#include "ui/mainwindow.h"
#include "view/symbolstyle.h"

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

static QString keyofdialog(const QDialog& dialog) {
    return "dialogs/" + dialog.objectName();
}

bool restoredialog(QDialog& dialog) {
    if (!themainwindow || !themainwindow->remembers || dialog.objectName().isEmpty()) return false;
    return dialog.restoreGeometry(windowsettings().value(keyofdialog(dialog)).toByteArray());
}

void rememberdialog(const QDialog& dialog) {
    if (!themainwindow || !themainwindow->remembers || dialog.objectName().isEmpty()) return;
    const QByteArray place = dialog.saveGeometry();
    QSettings kept = windowsettings();
    if (kept.value(keyofdialog(dialog)) != place) kept.setValue(keyofdialog(dialog), place);
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

static const struct {
    const char* key;
    bool symbolstyle::*on;
} symbolkeys[] = {{"symbols/engineering", &symbolstyle::field},
                  {"symbols/values", &symbolstyle::values},
                  {"symbols/solid", &symbolstyle::solid},
                  {"symbols/legend", &symbolstyle::legend},
                  {"symbols/apart", &symbolstyle::apart}};
static const char* const symbolsizekey = "symbols/size";

void restoresymbols() {
    const QSettings kept = windowsettings();
    for (const auto& [key, on] : symbolkeys)
        symbolsdrawn.*on = kept.value(key, symbolsdrawn.*on).toBool();
    const int size = kept.value(symbolsizekey, symbolsdrawn.size).toInt();
    if (size >= leastsymbols && size <= mostsymbols) symbolsdrawn.size = size;
}

void remembersymbols() {
    static symbolstyle written;
    if (written == symbolsdrawn) return;
    written = symbolsdrawn;
    QSettings kept = windowsettings();
    for (const auto& [key, on] : symbolkeys) kept.setValue(key, symbolsdrawn.*on);
    kept.setValue(symbolsizekey, symbolsdrawn.size);
}

static const char* const unitskey = "units/new";

void restoreunits() {
    const std::string text = windowsettings().value(unitskey).toString().toStdString();
    unitset set;
    if (text.empty() || !findunits(text, set)) return;
    newunits = text;
    newmodeldefaults();
    startjournal();
}

void rememberunits() {
    QSettings kept = windowsettings();
    kept.setValue(unitskey, qtext(newunits));
}
