// SPDX-License-Identifier: GPL-3.0-or-later
// Kinds of rows of the table of actions, and what they run and ask alike.
#pragma once

#include <functional>
#include <vector>

#include "core/session.h"
#include "ui/actions.h"

using actionrows = std::vector<action>;
using command = std::function<void()>;
using condition = std::function<bool()>;

condition checkof(array1<menustate>& list, int i);
condition enabledof(array1<menustate>& list, int i);
command dialog(const char* name);
bool isfree();  // no analysis runs

// A mark in one of the told lists, which shows in the views.
action mark(const char* array, int index, const char* caption, array1<menustate>& list, int i,
            command change, const char* icon = "");
action toggle(const char* array, int index, const char* caption, array1<menustate>& list,
              const char* icon = "");
action choice(const char* array, int index, const char* caption, array1<menustate>& list);

// Rows of one menu, and of one topic of the manual where a row names no other.
void addto(actionrows& table, const char* menu, const char* topic, actionrows rows);
