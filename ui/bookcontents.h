// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of the illustrated report, as window and scripts choose them.
#pragma once

#include <QString>

// Kept with the model, recorded. False with the reason where there is no such part.
bool changecontents(const QString& key, bool wanted, QString& fault);
