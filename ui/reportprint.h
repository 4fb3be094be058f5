// SPDX-License-Identifier: GPL-3.0-or-later
// A report on paper: letters so small that its longest line fits, a new sheet at each of its page
// headers, and name, date and number at the top of every sheet.
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QPainter;
class QPrinter;

struct reportlist {
    QString name;
    int count = 0;    // of lines
    int longest = 1;  // characters
    std::function<QString(int line)> text;
};
// First line of each sheet where so many lines have room on one.
std::vector<int> sheetsof(const reportlist& report, int room);
// Lines too long to be read across a standing sheet.
bool islandscape(const reportlist& report);
void printsheets(const reportlist& report, QPrinter& printer, QPainter& painter);
