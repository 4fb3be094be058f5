// SPDX-License-Identifier: GPL-3.0-or-later
// Recording and playing in the window.
#include "ui/recordplay.h"

#include <QFileInfo>
#include <algorithm>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/selection.h"
#include "files/filop.h"
#include "ui/actions.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"
#include "ui/scriptstage.h"
#include "view/moddraw.h"
#include "view/setviews.h"

// --- how the session is set ---------------------------------------------------------------------

static const struct {
    const char* name;
    int (*read)();
    int (*most)();  // what the model in hand may be set to
    void (*set)(int);
} sessionnumbers[] = {
    {"curlc", [] { return int(curlc); }, [] { return nlc(); }, [](int i) { curlc = Integer(i); }},
    {"curlcomb", [] { return curlcomb; }, [] { return ncomb(); }, [](int i) { curlcomb = i; }},
    {"activeview", [] { return int(activeview); }, [] { return int(nviews); },
     [](int i) { activeview = Integer(i); }},
};

static const char* const methods[] = {"Single", "Window", "Group", "All", "Lasso"};

// Marks by the names of their actions; those that are not named are off.
QString sessionline() {
    QStringList words = {"session", methods[int(selecttype)],
                         shownviews() > 1 ? "fourviews" : "oneview"};
    for (const auto& number : sessionnumbers)
        words << QString("%1=%2").arg(number.name).arg(number.read());
    for (const action& row : actions())
        if (row.isswitch && row.checked()) words << QString::fromStdString(row.name);
    return words.join(' ');
}

static void setnumber(const QString& word) {
    const int value = word.section('=', 1).toInt();
    for (const auto& number : sessionnumbers) {
        if (word.section('=', 0, 0) != number.name) continue;
        if (value >= 1 && value <= number.most()) number.set(value);
        return;
    }
    refuse("there is no number of the session in " + word);
}

// Marks that exclude one another: choosing one takes the others off, so those to be on come first.
static void setmarks(const QStringList& names) {
    for (const QString& name : names)
        if (const action* const row = findaction(name.toStdString()); !row || !row->isswitch)
            refuse("there is no mark " + name);
    for (const bool on : {true, false})
        for (const action& row : actions())
            if (row.isswitch && names.contains(QString::fromStdString(row.name)) == on &&
                row.checked() != on)
                row.run();
}

void setsession(const QStringList& words) {
    addready();
    clearselection();
    const auto method = std::ranges::find(methods, words.value(0));
    if (method == std::end(methods)) refuse("there is no selection method " + words.value(0));
    selecttype = selecttypes(method - std::begin(methods));
    words.value(1) == "fourviews" ? setfourviews() : setoneview();
    QStringList names;
    for (const QString& word : words.mid(2)) {
        if (word.contains('='))
            setnumber(word);
        else
            names << word;
    }
    setmarks(names);
    theplatform().refresh();
    redrawall();
}

// --- recording ----------------------------------------------------------------------------------

static filebox scriptbox(const char* title, bool saving) {
    filebox box;
    box.title = title;
    box.filter = "Scripts (*.kds)|*.kds|All files (*.*)|*.*";
    box.filterindex = 1;
    box.saving = saving;
    return box;
}

static void tellfault(const std::string& reason) {
    theplatform().message(
        "The script can not be written on: " + reason + ". The recording has ended.",
        icons::exclamation);
    theplatform().refresh();
}

static QStringList opening() {
    const QString model = isnamed() ? QFileInfo(QString::fromStdString(modelname)).fileName()
                                    : QString("an unnamed model");
    QStringList lines = {
        "# Recorded by " + QString::fromStdString(apptitle) + ". Play it on the model that it",
        "# began with: " + model + ", with the same options.",
    };
    if (tmpnodes(0, 0) > 0)
        lines << "# not recorded: what lay in the buffer for Paste before the recording began";
    return lines << sessionline();
}

static void begin() {
    const recordrest rest;
    filechoice choice = theplatform().askfile(scriptbox("Record Script", true));
    if (!choice.chosen) return;
    if (QFileInfo(QString::fromStdString(choice.path)).suffix().isEmpty()) choice.path += ".kds";
    const QString file = QString::fromStdString(choice.path);
    if (QFileInfo::exists(file) &&
        !theplatform().yes(QFileInfo(file).fileName().toStdString() + " exists. Write over it?"))
        return;
    addready();
    clearselection();
    onrecordfault = tellfault;
    QString fault;
    if (!startrecording(choice.path, opening(), fault))
        return theplatform().message("The script can not be written: " + fault.toStdString(),
                                     icons::exclamation);
    theplatform().refresh();
    theplatform().showstatus("Recording to " + choice.path + "; the same button ends it");
}

void togglerecording() {
    if (!isrecording()) return begin();
    const recorded done = endrecording();
    theplatform().refresh();
    theplatform().showstatus(std::to_string(done.lines) + " lines were recorded in " + done.path);
}

// --- playing ------------------------------------------------------------------------------------

void playfile() {
    const filechoice choice = theplatform().askfile(scriptbox("Play Script", false));
    if (!choice.chosen) return;
    const std::string fault = playonstage(choice.path, false);
    if (fault.empty()) return;
    addready();
    theplatform().message(fault, icons::exclamation);
}
