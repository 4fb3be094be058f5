// SPDX-License-Identifier: GPL-3.0-or-later
// What the buttons, the wheel and two fingers do to a view: presets to choose from, kept in
// window.ini. The left button alone always belongs to the mouse driver.
#pragma once

#include <QString>
#include <Qt>
#include <vector>

enum class viewmoves { none, pan, turn, zoom };

struct viewdrag {
    Qt::MouseButton button;
    Qt::KeyboardModifiers held;
    viewmoves does;
};

struct mousepreset {
    const char *name, *caption;
    std::vector<viewdrag> drags;
    viewmoves wheel, withctrl, withshift;  // what scrolling does
};
const std::vector<mousepreset>& mousepresets();

struct mousesettings {
    int preset = 0;
    bool reversed = false;  // the wheel towards the user enlarges
    bool cube = true;       // the cube of the axes stands in the views
    bool operator==(const mousesettings&) const = default;
};
const mousesettings& mousenow();
void setmouse(const mousesettings& settings);
void remembermouse();  // what is in use, for the next start
mousesettings rememberedmouse();

viewmoves dragof(Qt::MouseButton button, Qt::KeyboardModifiers held);
viewmoves wheelof(Qt::KeyboardModifiers held);
