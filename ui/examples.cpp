// SPDX-License-Identifier: GPL-3.0-or-later
// The examples and the hint of an empty view.
#include "ui/examples.h"

#include <QBoxLayout>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/textfile.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "files/saveset.h"
#include "ui/dialogs.h"
#include "ui/record.h"

namespace fs = std::filesystem;

std::string shippeddata() {
    const fs::path program = programdir;
    std::error_code ec;
    for (const fs::path& folder :
         {fs::path(appdir), program, program / "../share/kalvane", program / "../../data"})
        if (fs::exists(folder / "demo/tour.kds", ec))
            return fs::weakly_canonical(folder, ec).string();
    return {};
}

// A model that is there is the user's by now, whole as it stands.
static void copymissing(const fs::path& from, const fs::path& to) {
    std::error_code ec;
    fs::create_directories(to, ec);
    std::set<fs::path> missing;
    for (const auto& entry : fs::directory_iterator(from, ec))
        if (entry.path().extension() == ".tek" && !fs::exists(to / entry.path().filename(), ec))
            missing.insert(entry.path().stem());
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(from, ec))
        if (entry.is_regular_file(ec) && missing.contains(entry.path().stem()))
            files.push_back(entry.path());
    // The file that makes a model the user's comes last, when the others are there.
    std::ranges::stable_partition(files, [](const fs::path& f) { return f.extension() != ".tek"; });
    sweepfolder((to / "").string());
    for (const fs::path& file : files) {
        const fs::path target = to / file.filename();
        if (fs::exists(target, ec)) continue;
        guarded([&] { copywhole(file.string(), target.string()); }, [](const runtimeerror&) {});
        fs::permissions(target, fs::perms::owner_write, fs::perm_options::add, ec);
    }
}

std::string examplesfolder() {
    const fs::path shipped = fs::path(shippeddata()) / "examples",
                   own = fs::path(appdir) / "examples";
    std::error_code ec;
    if (!fs::equivalent(shipped, own, ec)) copymissing(shipped, own);
    return fs::is_directory(own, ec) ? own.string() : std::string();
}

void openpointed(const std::string& path) {
    const step s("Open");
    const recordedline line("menu File/Open...");
    filechoice choice;
    choice.chosen = true;
    choice.path = path;
    recordfile(choice, {});
    guarded([&] { askandopen(path); }, fallback);
}

// --- the hint -----------------------------------------------------------------------------------

static void fillexamples(QMenu* menu) {
    menu->clear();
    const QDir folder(QString::fromStdString(examplesfolder()));
    for (const QString& file : folder.entryList({"*.tek"}, QDir::Files, QDir::Name)) {
        QString caption = file.chopped(4);
        const std::string path = folder.filePath(file).toStdString();
        QObject::connect(menu->addAction(caption.replace("&", "&&")), &QAction::triggered, menu,
                         [path] { openpointed(path); });
    }
    if (menu->isEmpty()) menu->addAction(QObject::tr("There are none"))->setEnabled(false);
}

emptyhint::emptyhint(QWidget* view) : QFrame(view) {
    setObjectName("emptyhint");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    auto* const row = new QHBoxLayout(this);
    row->addWidget(new QLabel(tr("The model is empty. Draw it with Add, Graphics, or"), this));
    auto* const button = new QToolButton(this);
    button->setObjectName("examples");
    button->setText(tr("Open an Example"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto* const menu = new QMenu(button);
    connect(menu, &QMenu::aboutToShow, menu, [menu] { fillexamples(menu); });
    button->setMenu(menu);
    row->addWidget(button);
    view->installEventFilter(this);
}

void emptyhint::refresh() {
    const bool empty = nnodes() == 0 && ngraphics() == 0 && runningmode() == nullptr && !menulock;
    setVisible(empty);
    if (empty) place();
}

bool emptyhint::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Resize) place();
    return false;
}

// In the middle, over the scroll bar.
void emptyhint::place() {
    const int foot = 60;  // pixels
    adjustSize();
    move((parentWidget()->width() - width()) / 2, parentWidget()->height() - height() - foot);
}
