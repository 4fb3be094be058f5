// SPDX-License-Identifier: GPL-3.0-or-later
// The table of dialogs.
#include "ui/dialogs.h"

#include <QApplication>
#include <map>

#include "core/platform.h"
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
    adddialog("placenodes", makeplacenodes);
    adddialog("graphoptions", makegraphoptions);
    adddialog("Mselect", makemselect);
    adddialog("mesh2d", makemesh2d);
    adddialog("patchedit", makepatchedit);
    adddialog("modifyelem", makemodifyelem);
}

void tellfault(const runtimeerror& fault) {
    door().message(fault.what + " (error " + std::to_string(fault.number) + ")", icons::critical);
}

void showmodal(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
}

bool opendialog(const std::string& name) {
    const auto found = makers().find(name);
    if (found == makers().end()) return false;
    QDialog* const dialog = found->second();
    dialog->setObjectName(QString::fromStdString(name));
    showmodal(dialog);
    return true;
}
