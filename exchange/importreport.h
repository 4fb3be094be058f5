// SPDX-License-Identifier: GPL-3.0-or-later
// What became of a file: read, changed, skipped, and what was wrong with it. Every reader and
// writer fills one; nothing is dropped without a line here. The size stays bounded whatever the
// file holds: equal lines are one with a count, and of each kind only the first are kept.
#pragma once

#include <map>
#include <string>
#include <vector>

enum class reportkinds { read, changed, skipped, warning, error };
enum class reportitems { none, nodes, elements };

struct reportline {
    reportkinds kind = reportkinds::read;
    std::string text;
    long line = 0;   // of the file, the first of them; 0 for none
    long count = 0;  // how many
    reportitems items = reportitems::none;
    std::vector<int> numbers;  // what it speaks of, as numbered when the report was made
    std::size_t first = 0;     // their place in the list that follows the model
};

class importreport {
  public:
    std::string file, format;
    bool exporting = false;

    // "SHELL4 elements", 12: adds up under its name.
    void read(const std::string& what, long count = 1);
    void changed(const std::string& what, long count = 1, long line = 0);
    // Once a kind: the first line number and the count are told.
    void skipped(const std::string& what, long line = 0, long count = 1);
    void warn(const std::string& text, long line = 0);
    void error(const std::string& text, long line = 0);
    // The last line added speaks of this item too.
    void about(reportitems items, int number);

    const std::vector<reportline>& lines() const { return all; }
    std::vector<reportline>& lines() { return all; }
    long count(reportkinds kind) const;  // of all lines of a kind
    bool isplain() const;                // nothing but what was read: no need to show it unasked
    // The whole report as text, a line each; ends of lines are LF.
    std::string text() const;

  private:
    void add(reportkinds kind, const std::string& text, long line, long count);
    std::vector<reportline> all;
    std::map<std::pair<reportkinds, std::string>, std::size_t> places;
    std::map<reportkinds, long> kinds;  // lines kept of each
    std::size_t last = 0;
};

// A measure in a line of the report: four digits.
std::string roughly(double number);
// The line as the window and the file show it, without its kind.
std::string textof(const reportline& line);
const char* captionof(reportkinds kind, bool exporting);

// The report of the last import or export of the session; its items follow the model's numbers.
importreport& lastreport();
void keepreport(importreport report);
// Writes BASE.import.txt or BASE.export.txt beside the file that the report is of; returns its
// path. Throws errpathaccess, errdiskfull.
std::string writereport(const importreport& report);
// Selects the items of a line of the last report in the model; returns how many are still there.
int selectreported(std::size_t line);
void zoomtoreported();  // the active view to what was selected
