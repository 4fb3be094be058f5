// SPDX-License-Identifier: GPL-3.0-or-later
// Plans of the toolbars.
#include "ui/toolbarset.h"

#include <algorithm>

#include "ui/controlkinds.h"
#include "ui/menus.h"
#include "ui/windowsettings.h"

static const struct {
    const char *name, *caption;
    Qt::ToolBarArea area;
} bars[] = {
    {"filebar", "File", Qt::TopToolBarArea},
    {"editbar", "Edit", Qt::TopToolBarArea},
    {"selectbar", "Selection", Qt::TopToolBarArea},
    {"graphicbar", "Graphics", Qt::LeftToolBarArea},  // the row on top is full
    {"draftbar", "Drawing tools", Qt::LeftToolBarArea},
    {"scriptbar", "Script", Qt::LeftToolBarArea},
    {"viewbar", "View", Qt::TopToolBarArea},
    {"jobbar", "Job", Qt::TopToolBarArea},
};

toolbarset deliveredtoolbars() {
    toolbarset set;
    for (const auto& bar : bars) {
        toolbarplan plan{bar.name, bar.caption, bar.area, true, {}};
        int before = -1;
        for (const auto& [row, place] : actionsat(plan.name)) {
            if (plan.name != place->where) continue;  // beside one of its buttons
            if (before >= 0 && before / 10 != place->order / 10) plan.actions << "";
            before = place->order;
            plan.actions << QString::fromStdString(row->name);
        }
        set.bars.push_back(plan);
    }
    return set;
}

toolbarset rememberedtoolbars() {
    toolbarset set = deliveredtoolbars();
    QSettings kept = windowsettings();
    const int style = kept.value("toolbars/style", set.style).toInt();
    if (style >= Qt::ToolButtonIconOnly && style <= Qt::ToolButtonTextUnderIcon)
        set.style = Qt::ToolButtonStyle(style);
    const int size = kept.value("toolbars/size", set.size).toInt();
    if (std::ranges::count(toolbarsizes, size)) set.size = size;
    for (toolbarplan& plan : set.bars) {
        const QString names = "toolbars/" + plan.name;
        if (!kept.contains(names)) continue;
        plan.actions = kept.value(names).toStringList();
        erase_if(plan.actions, [](const QString& name) {
            return !name.isEmpty() && !findaction(name.toStdString());
        });
    }
    return set;
}

void remembertoolbars(const toolbarset& set) {
    const toolbarset delivered = deliveredtoolbars();
    QSettings kept = windowsettings();
    const auto keep = [&kept](const QString& key, const auto& value, const auto& as) {
        value == as ? kept.remove("toolbars/" + key) : kept.setValue("toolbars/" + key, value);
    };
    keep("style", int(set.style), int(delivered.style));
    keep("size", set.size, delivered.size);
    for (std::size_t i = 0; i < set.bars.size(); ++i)
        keep(set.bars[i].name, set.bars[i].actions, delivered.bars[i].actions);
}

// "&Settings|&Font ..." and "Node Labels..." are "Settings: Font: Node Labels".
std::vector<offeredaction> offeredactions() {
    std::vector<offeredaction> offered;
    for (const action& row : actions()) {
        if (!row.run || *row.caption == 0) continue;
        QStringList parts = QString::fromUtf8(row.menu).split('|', Qt::SkipEmptyParts);
        parts << QString::fromUtf8(row.caption);
        for (QString& part : parts) {
            part = plaintext(part);
            while (part.endsWith('.') || part.endsWith(' ')) part.chop(1);
        }
        offered.push_back({QString::fromStdString(row.name), parts.join(": ")});
    }
    return offered;
}
