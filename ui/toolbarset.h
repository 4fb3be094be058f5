// SPDX-License-Identifier: GPL-3.0-or-later
// Which toolbars there are, what stands on them and how they look: as delivered, as the user wants
// them, and as they are remembered.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

struct toolbarplan {
    QString name, caption;
    Qt::ToolBarArea area = Qt::TopToolBarArea;
    bool shown = true;    // remembered with the places of the bars
    QStringList actions;  // names of their rows; an empty one is a line
    bool operator==(const toolbarplan&) const = default;
};

struct toolbarset {
    Qt::ToolButtonStyle style = Qt::ToolButtonIconOnly;
    int size = 20;  // of the icons, pixels at a scale of 1
    std::vector<toolbarplan> bars;
    bool operator==(const toolbarset&) const = default;
};

const int toolbarsizes[] = {16, 20, 24, 32, 48};

// From the places that the table of actions gives.
toolbarset deliveredtoolbars();
// As delivered, with what window.ini tells otherwise. Actions that there are no more are left out.
toolbarset rememberedtoolbars();
void remembertoolbars(const toolbarset& set);  // only what is not as delivered
// What can be put on a toolbar, as "Menu: Item", in the order of the menus.
struct offeredaction {
    QString name, caption;
};
std::vector<offeredaction> offeredactions();
