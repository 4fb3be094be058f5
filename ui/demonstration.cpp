// SPDX-License-Identifier: GPL-3.0-or-later
// The demonstration: the tour in a folder of its own.
#include "ui/demonstration.h"

#include <QTemporaryDir>
#include <filesystem>
#include <memory>

#include "core/appdir.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "ui/examples.h"
#include "ui/qtplatform.h"
#include "ui/scriptstage.h"

namespace fs = std::filesystem;

void rundemo() {
    static std::unique_ptr<QTemporaryDir> room;  // holds the models that stay open after it
    const fs::path data = shippeddata();
    if (data.empty()) {
        theplatform().message("The demonstration was not found: demo/tour.kds in " + appdir,
                              icons::exclamation);
        return;
    }
    if (menunew() != reply::done) return;
    room = std::make_unique<QTemporaryDir>();
    const fs::path copy = fs::path(room->path().toStdString()) / "data";
    for (const char* folder : {"demo", "examples"})
        copytree((data / folder).string(), (copy / folder).string());
    const std::string fault =
        playonstage((copy / "demo/tour.kds").string(), !theqtplatform().scripted);
    addready();
    if (!fault.empty())
        theplatform().message("The demonstration ended early: " + fault, icons::exclamation);
}
