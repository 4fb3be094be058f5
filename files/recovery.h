// SPDX-License-Identifier: GPL-3.0-or-later
// The copy of unsaved work, in a folder of its own a process under appdir: written whole beside the
// settings, removed once the model is saved or the program ends, offered when its process is gone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes the model in hand, its name and all that belongs to it; flushed, in place of the copy
// before. False, with that copy untouched, where the disk refuses.
bool writecopy();
void dropcopy();

// The copy of a process that ended without saving.
struct orphan {
    std::string file, name, when;
    std::uintmax_t bytes = 0;
};
std::vector<orphan> findorphans();
// The copy becomes the model in hand, with its name and unsaved. False, after a message and with
// the model as it was, where the copy can not be read.
bool readcopy(const orphan& copy);
void droporphan(const orphan& copy);
