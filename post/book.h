// SPDX-License-Identifier: GPL-3.0-or-later
// The illustrated report, for people: which parts it has, and their order. What is chosen is kept
// with the model.
#pragma once

#include <string>
#include <vector>

#include "post/booksink.h"
#include "post/scene.h"

struct bookpart {
    const char *chapter, *key, *caption;
    bool preset;
    void (*write)(booksink&);
};
const std::vector<bookpart>& bookparts();

struct bookchoice {
    std::string title, project, client, author, remarks;
    std::vector<std::string> changed;  // keys of the parts that are not as they are preset
    std::vector<scene> views;          // pictures that the user has added
};
bookchoice thebook();                    // of the model
void storebook(const bookchoice& book);  // with the model, as one step

bool ispartwanted(const bookchoice& book, const std::string& key);
// False where there is no part of this key.
bool wantpart(bookchoice& book, const std::string& key, bool wanted);
std::string booktitle(const bookchoice& book);  // what is typed, or the model's name
scene sceneforbook();                           // the view as it stands, with a caption

// Writes all that is chosen. The session's display is as before afterwards.
void writebook(booksink& to);
// Between two rows and two pictures: throws errstopped once the user has given it up.
void bookprogress();
void wirebook();  // the reader of the section
