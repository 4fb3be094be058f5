// SPDX-License-Identifier: GPL-3.0-or-later
// The parts of the illustrated report. Each writes what the model and its results hold, or says
// that they hold none.
#pragma once

#include "post/booksink.h"
#include "post/memberfile.h"
#include "post/scene.h"

// Of the model.
void bookmodelpictures(booksink& b);
void booksummary(booksink& b);
void bookgroups(booksink& b);
void booknodes(booksink& b);
void bookelements(booksink& b);
void booksupports(booksink& b);
void bookloads(booksink& b);
void bookcombinations(booksink& b);

// Of the results.
void bookbalance(booksink& b);
void bookmasses(booksink& b);
void bookdisplacements(booksink& b);  // largest
void bookreactions(booksink& b);
void bookstresses(booksink& b);   // largest by group
void bookenvelopes(booksink& b);  // the worst places
void bookmodes(booksink& b);
void bookshapes(booksink& b);
void bookcontours(booksink& b);
void bookdiagrams(booksink& b, const std::vector<memberquantity>& quantities);
void bookalldisplacements(booksink& b);
void bookallforces(booksink& b);
void bookallstresses(booksink& b);
void bookallmembers(booksink& b);
void bookallenvelopes(booksink& b);

// A scene as a picture of view 1.
void bookpicture(booksink& b, const scene& s);
// Are there results of static cases for this model? Says so where there are none.
bool hasresults(booksink& b);
