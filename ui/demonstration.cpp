// SPDX-License-Identifier: GPL-3.0-or-later
// The list of demonstrations, and what becomes of the model meanwhile.
#include "ui/demonstration.h"

#include <QBoxLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "files/filemenu.h"
#include "files/filop.h"
#include "files/recovery.h"
#include "ui/controls.h"
#include "ui/demoplay.h"
#include "ui/dialogs.h"
#include "ui/examples.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "view/moddraw.h"
#include "view/setviews.h"

namespace fs = std::filesystem;

std::vector<demonstration> demonstrations() {
    std::vector<demonstration> list;
    const QDir folder(qtext(shippeddata()) + "/demo");
    for (const QString& name : folder.entryList({"*.kds"}, QDir::Files, QDir::Name)) {
        demonstration demo{folder.filePath(name), QFileInfo(name).completeBaseName(), {}};
        QFile file(demo.file);
        if (!file.open(QIODevice::ReadOnly)) continue;
        for (QString line = file.readLine(); line.startsWith('#'); line = file.readLine()) {
            if (line.startsWith("# Title: ")) demo.title = line.mid(9).trimmed();
            if (line.startsWith("# About: ")) demo.about = line.mid(9).trimmed();
            if (line.startsWith("# Place: ")) demo.place = line.mid(9).toInt();
        }
        list.push_back(demo);
    }
    std::ranges::stable_sort(list, {}, &demonstration::place);
    return list;
}

// --- the model meanwhile ------------------------------------------------------------------------

static void bringback(modelaside& aside) {
    if (!aside.bringback()) return;
    for (int i = deformedshape; i <= elementstress; ++i) menupostItem(i).checked = false;
    showmodelname();
    setscrollbars();
    theplatform().refresh();
    redrawall();
}

// False: the user takes the former model back.
static bool goeson(const modelaside& aside) {
    messagebox box;
    box.text = "Go on with the model of the demonstration, or take back the model that you had?";
    box.set = buttons::yesno;
    box.icon = icons::question;
    box.preset = answers::no;
    box.captions = {"Go on with this one", "Take mine back"};
    if (theplatform().show(box) != answers::yes) return false;
    if (!aside.unsaved()) return true;
    box.text = "Your model has changes that are not saved. Drop them?";
    box.captions = {"Drop them", "Take mine back"};
    return theplatform().show(box) == answers::yes;
}

void playdemonstration(const QString& file) {
    static std::unique_ptr<QTemporaryDir> room;  // holds the models that stay open after it
    std::optional<modelaside> aside;
    if (nnodes() > 0 || ngraphics() > 0) aside.emplace();
    if (aside && !aside->kept())
        return theplatform().message(
            "The demonstration was not started: the model in hand could not be put aside on "
            "disk. Save it and choose File, New first.",
            icons::exclamation);
    auto next = std::make_unique<QTemporaryDir>();
    const fs::path copy = fs::path(next->path().toStdString()) / "data",
                   data = fs::path(file.toStdString()).parent_path().parent_path();
    for (const char* folder : {"demo", "examples"})
        copytree((data / folder).string(), (copy / folder).string());
    const QString script = qtext((copy / "demo").string()) + "/" + QFileInfo(file).fileName();
    const demooutcome outcome = playdemo(script, !theqtplatform().scripted);
    if (outcome.end == demoends::failed)
        theplatform().message("The demonstration ended early: " + outcome.fault.toStdString(),
                              icons::exclamation);
    if (aside && !goeson(*aside))
        bringback(*aside);
    else
        room = std::move(next);
    theplatform().refresh();
}

// --- the list -----------------------------------------------------------------------------------

namespace {

class demolist : public QDialog {
  public:
    demolist() : QDialog(themainwindow), demos(demonstrations()) {
        setWindowTitle("Demonstrations");
        auto* const rows = new QVBoxLayout(this);
        auto* const label = new QLabel("&Choose what the program shows:", this);
        rows->addWidget(label);
        list = new QListWidget(this);
        list->setObjectName("List1");
        label->setBuddy(list);
        for (const demonstration& demo : demos) list->addItem(demo.title);
        list->setCurrentRow(0);
        list->setMinimumSize(420, 9 * fontMetrics().lineSpacing());
        rows->addWidget(list, 1);
        about = new QLabel(this);
        about->setObjectName("about");
        about->setTextFormat(Qt::PlainText);
        about->setWordWrap(true);
        about->setMinimumHeight(3 * fontMetrics().lineSpacing());
        rows->addWidget(about);
        if (demos.empty())
            about->setText("No demonstrations were found: demo/*.kds in " + qtext(appdir));
        auto* const last = new QHBoxLayout;
        last->addStretch(1);
        QPushButton* const start = newbutton("Start", "&Start", this, last);
        QPushButton* const ready = newbutton("Ready", "Close", this, last);
        rows->addLayout(last);
        start->setEnabled(!demos.empty());
        start->setDefault(true);
        connect(list, &QListWidget::currentRowChanged, this, [this](int row) { tell(row); });
        connect(list, &QListWidget::itemDoubleClicked, this, [this] { play(); });
        connect(start, &QPushButton::clicked, this, [this] { play(); });
        connect(ready, &QPushButton::clicked, this, &QDialog::reject);
        tell(0);
    }

  private:
    void tell(int row) {
        if (row >= 0 && row < int(demos.size())) about->setText(demos[std::size_t(row)].about);
    }
    // When the window is gone: the demonstration has the screen for itself.
    void play() {
        const int row = list->currentRow();
        if (row < 0 || row >= int(demos.size())) return;
        const QString file = demos[std::size_t(row)].file;
        accept();
        QTimer::singleShot(0, themainwindow, [file] { playdemonstration(file); });
    }

    std::vector<demonstration> demos;
    QListWidget* list;
    QLabel* about;
};

}  // namespace

QDialog* makedemonstrations() {
    return new demolist;
}

void rundemo() {
    opendialog("Demonstrations");
}
