// SPDX-License-Identifier: GPL-3.0-or-later
// Wiring of the floors.
#include "ui/startup.h"

#include "core/runtime.h"
#include "edit/Mouseprocedures.h"
#include "post/shapes.h"
#include "tools/Graphics.h"
#include "tools/pointentry.h"
#include "tools/singleelem.h"
#include "ui/dialogs.h"
#include "view/moddraw.h"
#include "view/symbols.h"

void wiremodules() {
    initsymbols();
    wirelayers();
    wiremouse();
    wiregraphics();
    wirepointentry();
    wiresingleelem();
    wirepost();
    wiredialogs();
}

bool guardedapplication::notify(QObject* receiver, QEvent* event) {
    bool taken = false;
    guarded([&] { taken = QApplication::notify(receiver, event); }, fallback);
    return taken;
}
