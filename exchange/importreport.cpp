// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of the report and their items.
#include "exchange/importreport.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <span>
#include <utility>

#include "core/catalogue.h"
#include "core/model.h"
#include "core/modeltable.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "core/views.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "view/setviews.h"

static const long mostlines = 500;            // of a kind
static const std::size_t mostitems = 100000;  // that a line names

void importreport::add(reportkinds kind, const std::string& text, long line, long count) {
    static const std::string beyond = "More of this kind that are not listed";
    auto at = places.find({kind, text});
    const bool isfull = at == places.end() && kinds[kind] >= mostlines;
    if (isfull) at = places.find({kind, beyond});
    if (at != places.end()) {
        all[last = at->second].count += count;
        return;
    }
    ++kinds[kind];
    last = all.size();
    places[{kind, isfull ? beyond : text}] = last;
    all.push_back({kind, isfull ? beyond : text, line, count, reportitems::none, {}, 0});
}

void importreport::read(const std::string& what, long count) {
    add(reportkinds::read, what, 0, count);
}

void importreport::changed(const std::string& what, long count, long line) {
    add(reportkinds::changed, what, line, count);
}

void importreport::skipped(const std::string& what, long line, long count) {
    add(reportkinds::skipped, what, line, count);
}

void importreport::warn(const std::string& text, long line) {
    add(reportkinds::warning, text, line, 1);
}

void importreport::error(const std::string& text, long line) {
    add(reportkinds::error, text, line, 1);
}

void importreport::about(reportitems items, int number) {
    if (all.empty()) return;
    reportline& line = all[last];
    line.items = items;
    if (line.numbers.size() < mostitems) line.numbers.push_back(number);
}

long importreport::count(reportkinds kind) const {
    long sum = 0;
    for (const reportline& line : all)
        if (line.kind == kind) sum += line.count;
    return sum;
}

bool importreport::isplain() const {
    return std::ranges::all_of(all,
                               [](const reportline& l) { return l.kind == reportkinds::read; });
}

const char* captionof(reportkinds kind, bool exporting) {
    switch (kind) {
        case reportkinds::read:
            return exporting ? "Written" : "Read";
        case reportkinds::changed:
            return "Changed";
        case reportkinds::skipped:
            return exporting ? "Left out" : "Skipped";
        case reportkinds::warning:
            return "Warning";
        case reportkinds::error:
            return "Error";
    }
    return "";
}

std::string roughly(double number) {
    char text[32];
    const auto end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::general, 4).ptr;
    return {text, end};
}

std::string textof(const reportline& line) {
    std::string text = line.text;
    if (line.kind == reportkinds::read || line.count != 1) text += ": " + numbertext(line.count);
    if (line.line > 0)
        text += (line.count > 1 ? " (first in line " : " (line ") + numbertext(line.line) + ")";
    return text;
}

std::string importreport::text() const {
    std::string result = format + (exporting ? " written: " : " read: ") + file + "\n";
    for (const reportkinds kind : {reportkinds::error, reportkinds::warning, reportkinds::skipped,
                                   reportkinds::changed, reportkinds::read}) {
        bool headed = false;
        for (const reportline& line : all) {
            if (line.kind != kind) continue;
            if (!std::exchange(headed, true))
                result += std::string("\n") + captionof(kind, exporting) + "\n";
            result += "  " + textof(line) + "\n";
        }
    }
    return result;
}

// --- of the session -----------------------------------------------------------------------------

// The items of all its lines stand in two lists that follow the model's numbers.
static importreport kept;
static std::vector<int> keptnodes, keptelements;

importreport& lastreport() {
    return kept;
}

static std::vector<int>& listof(reportitems items) {
    return items == reportitems::nodes ? keptnodes : keptelements;
}

void keepreport(importreport report) {
    kept = std::move(report);
    keptnodes.clear();
    keptelements.clear();
    for (reportline& line : kept.lines()) {
        std::vector<int>& list = listof(line.items);
        line.first = list.size();
        list.insert(list.end(), line.numbers.begin(), line.numbers.end());
    }
    holdreference("Nodes of the report", items::node, losses::zero,
                  [] { return std::span(keptnodes); });
    holdreference("Elements of the report", items::element, losses::zero,
                  [] { return std::span(keptelements); });
}

std::string writereport(const importreport& report) {
    std::filesystem::path path = report.file;
    path.replace_extension(report.exporting ? ".export.txt" : ".import.txt");
    textout out(path.string());
    std::string text = report.text();
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        out.raw(std::string_view(text).substr(begin, end - begin)).endline();
        begin = end + 1;
    }
    out.commit();
    return path.string();
}

int selectreported(std::size_t line) {
    if (line >= kept.lines().size() || kept.lines()[line].items == reportitems::none) return 0;
    const reportline& chosen = kept.lines()[line];
    const bool ofnodes = chosen.items == reportitems::nodes;
    const std::vector<int>& list = listof(chosen.items);
    std::vector<int> numbers(list.begin() + long(chosen.first),
                             list.begin() + long(chosen.first + chosen.numbers.size()));
    std::erase_if(numbers, [&](int n) { return n < 1 || n > (ofnodes ? nnodes() : nelems()); });
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    releaseselection();
    checkselectitem(ofnodes ? selectnodes : selectelements);
    int count = 0;
    for (const int number : numbers)
        if (++count; ofnodes)
            nodesel(count) = number;
        else
            elemsel(count) = float(number);
    if (ofnodes)
        nodesel(0) = count;
    else
        elemsel(0) = float(count);
    showselection();
    return count;
}

void zoomtoreported() {
    std::vector<int> list = selectednodes();
    for (const int e : selectedelements())
        for (int k = 1; k <= nodesoftype(elems(e, 0)); ++k) list.push_back(int(elems(e, k)));
    zoomtonodes(activeview, list);
}
