// SPDX-License-Identifier: GPL-3.0-or-later
// The manual as the help window reads it: its chapters, its index, what stands where, and the page
// in the style that rich text understands. Nothing here shows a window.
#pragma once

#include <QString>
#include <vector>

class QPalette;

struct helpentry {
    int level;  // of a heading: 2 a chapter, 3 a section; 0 for a row of a table
    QString title, anchor;
};

// Headings that carry an anchor, in the order of the page.
std::vector<helpentry> contentsof(const QString& page);
// Headings and rows of tables that carry an anchor, by the alphabet.
std::vector<helpentry> indexof(const QString& page);
bool hasanchor(const QString& page, const QString& anchor);

struct helphit {
    helpentry place;  // the heading above what was found
    int count;
};
// Headings under which every one of the words stands, those with most of them first.
std::vector<helphit> findinpage(const QString& page, const QString& words);

// The page for a rich text of these colours, with pictures at most so wide. Style sheets of
// browsers are beyond rich text, it drops them whole; and it knows the anchor of a cell, not that
// of a row.
QString richpage(QString page, const QPalette& colours, int mostwidth);
