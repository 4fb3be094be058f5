// SPDX-License-Identifier: GPL-3.0-or-later
// Kinds of rows of the table of actions.
#include "ui/actionkinds.h"

#include <utility>

#include "core/platform.h"
#include "view/moddraw.h"

condition checkof(array1<menustate>& list, int i) {
    return [&list, i] { return list(i).checked; };
}

condition enabledof(array1<menustate>& list, int i) {
    return [&list, i] { return list(i).enabled; };
}

command dialog(const char* name) {
    return [name] { theplatform().showdialog(name); };
}

bool isfree() {
    return !menulock;
}

action mark(const char* array, int index, const char* caption, array1<menustate>& list, int i,
            command change, const char* icon) {
    action row;
    row.name = std::string(array) + "(" + std::to_string(index) + ")";
    row.caption = caption;
    row.icon = icon;
    row.run = std::move(change);
    row.checked = checkof(list, i);
    row.isswitch = true;
    return row;
}

action toggle(const char* array, int index, const char* caption, array1<menustate>& list,
              const char* icon) {
    const auto change = [&list, index] {
        list(index).checked = !list(index).checked;
        theplatform().refresh();
        redrawall();
    };
    return mark(array, index, caption, list, index, change, icon);
}

action choice(const char* array, int index, const char* caption, array1<menustate>& list) {
    const auto change = [&list, index] {
        checkonly(list, index);
        theplatform().refresh();
        redrawall();
    };
    return mark(array, index, caption, list, index, change);
}

void addto(actionrows& table, const char* menu, const char* topic, actionrows rows) {
    for (action& row : rows) {
        row.menu = menu;
        if (*row.topic == 0) row.topic = topic;
        table.push_back(std::move(row));
    }
}
