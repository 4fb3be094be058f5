// SPDX-License-Identifier: GPL-3.0-or-later
// The examples that come with the program, and the opening of a model that is pointed at.
#pragma once

#include <QStringList>
#include <string>

// Directory that holds demo and examples as they were shipped: installed, beside the program, or of
// the source tree. Empty where there is none.
std::string shippeddata();
// The user's own copies of the examples, beside the settings: what is saved or analysed there
// leaves the shipped ones alone. Those that are not there yet are copied first.
std::string examplesfolder();

// Opens a model that the user points at: a recent one, an example, a file that was dropped.
void openpointed(const std::string& path);
// Several: each but the first in a window of its own, as a window holds one model.
void openmodels(const QStringList& files);
