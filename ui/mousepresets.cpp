// SPDX-License-Identifier: GPL-3.0-or-later
// The presets. State: the settings in use.
#include "ui/mousepresets.h"

#include <algorithm>

#include "ui/windowsettings.h"

static mousesettings inuse;

const std::vector<mousepreset>& mousepresets() {
    using enum viewmoves;
    static const viewdrag altleft{Qt::LeftButton, Qt::AltModifier, turn};
    static const std::vector<mousepreset> presets = {
        {"delivered",
         "As delivered",
         {{Qt::MiddleButton, Qt::NoModifier, pan},
          {Qt::MiddleButton, Qt::ShiftModifier, turn},
          altleft},
         zoom,
         zoom,
         zoom},
        {"cad",
         "CAD",
         {{Qt::MiddleButton, Qt::NoModifier, turn},
          {Qt::MiddleButton, Qt::ShiftModifier, pan},
          {Qt::MiddleButton, Qt::ControlModifier, zoom},
          altleft},
         zoom,
         zoom,
         pan},
        {"feviewer",
         "FE viewer",
         {{Qt::MiddleButton, Qt::NoModifier, turn},
          {Qt::MiddleButton, Qt::ShiftModifier, zoom},
          {Qt::RightButton, Qt::NoModifier, pan},
          altleft},
         zoom,
         zoom,
         pan},
        {"touchpad",
         "Touchpad",
         {altleft,
          {Qt::LeftButton, Qt::AltModifier | Qt::ShiftModifier, pan},
          {Qt::MiddleButton, Qt::NoModifier, pan},
          {Qt::MiddleButton, Qt::ShiftModifier, turn}},
         pan,
         zoom,
         turn},
    };
    return presets;
}

const mousesettings& mousenow() {
    return inuse;
}

mousesettings rememberedmouse() {
    const QSettings kept = windowsettings();
    mousesettings settings;
    const QString name = kept.value("mouse/preset").toString();
    const auto found = std::ranges::find(mousepresets(), name, &mousepreset::name);
    if (found != mousepresets().end()) settings.preset = int(found - mousepresets().begin());
    settings.reversed = kept.value("mouse/reversed", false).toBool();
    settings.cube = kept.value("mouse/cube", true).toBool();
    return settings;
}

void setmouse(const mousesettings& settings) {
    inuse = settings;
}

void remembermouse() {
    QSettings kept = windowsettings();
    kept.setValue("mouse/preset", mousepresets()[std::size_t(inuse.preset)].name);
    kept.setValue("mouse/reversed", inuse.reversed);
    kept.setValue("mouse/cube", inuse.cube);
}

static const mousepreset& present() {
    return mousepresets()[std::size_t(inuse.preset)];
}

viewmoves dragof(Qt::MouseButton button, Qt::KeyboardModifiers held) {
    held &= Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    for (const viewdrag& drag : present().drags)
        if (drag.button == button && drag.held == held) return drag.does;
    return viewmoves::none;
}

viewmoves wheelof(Qt::KeyboardModifiers held) {
    if (held & Qt::ControlModifier) return present().withctrl;
    if (held & Qt::ShiftModifier) return present().withshift;
    return present().wheel;
}
