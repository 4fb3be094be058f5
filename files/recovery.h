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

// The model in hand put aside in the copy, which stays as it is while this lives: a program that
// ends meanwhile offers it at the next start.
class modelaside {
  public:
    modelaside();
    ~modelaside();  // the copy is dropped: the model in hand is the one that counts
    modelaside(const modelaside&) = delete;
    modelaside& operator=(const modelaside&) = delete;
    bool kept() const { return whole; }  // false: the disk refuses
    bool unsaved() const { return changed; }
    bool bringback();

  private:
    bool changed, whole;
};

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
