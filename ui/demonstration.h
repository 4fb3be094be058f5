// SPDX-License-Identifier: GPL-3.0-or-later
// Run Demo: the demonstrations of data/demo to choose from, each played in a copy of the examples
// so that nothing of the user's is written over.
#pragma once

#include <QString>
#include <vector>

struct demonstration {
    QString file, title, about;  // as its first lines tell
    int place = 99;              // in the list; those that tell none stand last
};
std::vector<demonstration> demonstrations();

void rundemo();  // opens the list
// Plays one. The model in hand is put aside; at the end the user goes on with the demonstration's
// or takes the former one back.
void playdemonstration(const QString& file);
