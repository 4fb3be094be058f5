// SPDX-License-Identifier: GPL-3.0-or-later
// Result files whose rows several processes make: the first writes them in the order of the files
// that the model came from, and holds no more than a stretch of them at a time.
#pragma once

#include <future>
#include <optional>
#include <span>
#include <utility>

#include "solver/base/model.h"
#include "solver/processes/ranks.h"
#include "solver/results/rowtext.h"

// A file that only the first process has.
class resultfile {
  public:
    explicit resultfile(const std::string& path) {
        if (allranks().first()) file.emplace(path);
    }
    textout* get() { return file ? &*file : nullptr; }
    template <typename... Numbers>
    void line(Numbers... numbers) {
        if (file) file->line(numbers...);
    }
    void quotedline(const std::string& words) {
        if (file) file->quoted(words).endline();
    }
    void rawline(std::string_view words) {
        if (file) file->raw(words).endline();
    }
    void commit() {
        if (file) file->commit();
    }

  private:
    std::optional<textout> file;
};

// Merges the rows of all processes on the first. They come in parcels of pieces, rows whose numbers
// follow each other: no other process has one among them.
class rowmerger {
  public:
    explicit rowmerger(std::vector<textout*> files) : out(std::move(files)) {}
    // Adds a piece to a parcel; texts: what it brings to each file.
    static void add(std::string& parcel, int number, std::span<const std::string_view> texts);
    // The pieces of all processes come into the files by ascending number, while this one goes on;
    // the parcel becomes empty.
    void merge(std::string& parcel);
    void finish();

  private:
    void write() const;
    std::vector<textout*> out;
    std::vector<std::string> arrived, inwork;  // by process
    std::future<void> writing;
};

// Some rows of one process.
template <std::size_t files>
class rowblock {
  public:
    // The items first..last-1.
    template <typename Number, typename Row>
    void make(int first, int last, Number numberof, Row row) {
        pieces.clear();
        for (rowtext& text : texts) text.clear();
        for (int i = first; i < last; ++i) {
            row(i, texts);
            if (i == first || numberof(i) != numberof(i - 1) + 1)
                pieces.push_back({numberof(i), {}});
            for (std::size_t k = 0; k < files; ++k)
                pieces.back().end[k] = texts[k].content().size();
        }
    }
    void addto(std::string& parcel) const {
        std::array<std::size_t, files> begin{};
        for (const piece& one : pieces) {
            std::array<std::string_view, files> part;
            for (std::size_t k = 0; k < files; ++k)
                part[k] = texts[k].content().substr(begin[k], one.end[k] - begin[k]);
            rowmerger::add(parcel, one.number, part);
            begin = one.end;
        }
    }

  private:
    struct piece {
        int number;                          // of its first row
        std::array<std::size_t, files> end;  // of its text
    };
    std::array<rowtext, files> texts;
    std::vector<piece> pieces;
};

// Writes a row for each of some items of this process, made by row(i, texts) of the item i from 0,
// whose number is numberof(i), ascending; all: the largest number of any process.
template <std::size_t files, typename Number, typename Row>
void writeshared(const std::array<textout*, files>& out, int count, int all, int blockrows,
                 Number numberof, Row row) {
    if (allranks().alone()) return writerows(out, count, blockrows, row);
    const int stretch = 1 << 12;  // numbers, some 8 MiB of the longest rows
    rowmerger merger({out.begin(), out.end()});
    std::vector<rowblock<files>> blocks(std::size_t((stretch + blockrows - 1) / blockrows));
    std::string parcel;
    for (int from = 0, first = 0, next = 0; from <= all; from += stretch, first = next) {
        while (next < count && numberof(next) < from + stretch) ++next;
        const int made = (next - first + blockrows - 1) / blockrows;
        parallelpieces(made, 1, [&](int begin, int end, int thread) {
            for (int b = begin; b < end; ++b) {
                const int at = first + b * blockrows;
                blocks[std::size_t(b)].make(at, std::min(at + blockrows, next), numberof, row);
                if (thread == 0) allranks().nudge();
            }
        });
        for (int b = 0; b < made; ++b) blocks[std::size_t(b)].addto(parcel);
        merger.merge(parcel);
    }
    merger.finish();
}
