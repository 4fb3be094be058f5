// SPDX-License-Identifier: GPL-3.0-or-later
// Icons of toolbars and menus, drawn from short outlines so that they are sharp at every scale and
// follow the colours of light and dark desktops.
#pragma once

#include <QIcon>
#include <string>

// The icon of this name; an empty icon where there is none.
QIcon iconof(const std::string& name);
// The program's own icon.
QIcon programicon();
// Pictures of the spring symbols, in the normal and the selected state.
void loadspringpictures();
