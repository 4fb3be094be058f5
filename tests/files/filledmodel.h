// SPDX-License-Identifier: GPL-3.0-or-later
// A model with something in every one of its files.
#pragma once

#include "tests/support/recorder.h"

void fillmodel();
// The model in hand under another name.
void saveas(const std::string& base);

struct filledroom : sessionroom {
    filledroom() { fillmodel(); }
    explicit filledroom(const std::string& name) : filledroom() { saveas(file(name)); }
};
