// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped data and the user's copies of the examples.
#include "ui/examples.h"

#include <QProcess>
#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "core/journal.h"
#include "core/session.h"
#include "core/textfile.h"
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

void openmodels(const QStringList& files) {
    if (files.empty()) return;
    openpointed(files.first().toStdString());
    for (const QString& file : files.mid(1))
        if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), {file}))
            theplatform().message("No further window could be started for " + file.toStdString(),
                                  icons::exclamation);
}
