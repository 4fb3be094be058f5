// SPDX-License-Identifier: GPL-3.0-or-later
// The table of dialogs.
#include "ui/dialogs.h"

#include <QApplication>
#include <map>

#include "core/platform.h"
#include "edit/Mouseprocedures.h"
#include "ui/mainwindow.h"

static std::map<std::string, std::function<QDialog*()>>& makers() {
    static std::map<std::string, std::function<QDialog*()>> table;
    return table;
}

void adddialog(const std::string& name, std::function<QDialog*()> make) {
    makers()[name] = std::move(make);
}

void wiredialogs() {
    adddialog("setmem", makesetmem);
    adddialog("Aoptions", makeaoptions);
    adddialog("frmAbout", makeabout);
    adddialog("Info", makeinfo);
    adddialog("modelinfo", makemodelinfo);
    adddialog("viewcontrol", makeviewcontrol);
    adddialog("Colorset", makecolorset);
    adddialog("Symbols", makesymbols);
    adddialog("Options", makeoptions);
    adddialog("cardhelp", makecardhelp);
    adddialog("Loadkees", makeloadkees);
    adddialog("Loadcombinations", makeloadcombinations);
    adddialog("nodeattributes", makenodeattributes);
    adddialog("defgroup", makedefgroup);
    adddialog("Roptions", makeroptions);
    adddialog("Soptions", makesoptions);
    adddialog("placenodes", makeplacenodes);
    adddialog("graphoptions", makegraphoptions);
    adddialog("Mselect", makemselect);
    adddialog("mesh2d", makemesh2d);
    adddialog("patchedit", makepatchedit);
    adddialog("modifyelem", makemodifyelem);
    adddialog("addsingleelem", makeaddsingleelem);
}

void tellfault(const runtimeerror& fault) {
    door().message(fault.what + " (error " + std::to_string(fault.number) + ")", icons::critical);
}

void fallback(const runtimeerror& fault) {
    guarded(addready, [](const runtimeerror&) {});  // what failed may fail again in a redraw
    tellfault(fault);
}

void sidedialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    const int gap = 24;  // pixels
    const QRect window = themainwindow->frameGeometry();
    move(window.right() - width() - gap, window.center().y() - height() / 2);
}

void showmodal(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (!dialog->property(besidemain).toBool()) dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}

// A dialog that stays beside the main window may be open already.
static bool raiseopen(const std::string& name) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!w->isVisible() || w->objectName().toStdString() != name) continue;
        w->raise();
        w->activateWindow();
        return true;
    }
    return false;
}

bool opendialog(const std::string& name) {
    if (raiseopen(name) || endpendingselection()) return true;  // the one that waits comes back
    const auto found = makers().find(name);
    if (found == makers().end()) return false;
    QDialog* const dialog = found->second();
    dialog->setObjectName(QString::fromStdString(name));
    showmodal(dialog);
    return true;
}
