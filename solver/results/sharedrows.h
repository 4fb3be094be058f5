// SPDX-License-Identifier: GPL-3.0-or-later
// Result files whose rows several processes make: the first writes them in the order of the files
// that the model came from, and holds no more than a stretch of them at a time.
#pragma once

#include <optional>

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

// Rows of one process, ready for being merged with those of others.
class rowparcel {
  public:
    rowparcel(std::size_t files) : texts(files), ends(files) {}
    void add(int number, std::size_t file, std::string_view text);
    std::string packed() const;

  private:
    std::vector<int> numbers;
    std::vector<std::string> texts;      // by file
    std::vector<std::vector<int>> ends;  // of each row, by file
};

// The first takes the parcels of all and writes their rows by ascending number.
void mergerows(const std::vector<textout*>& out, const rowparcel& mine);

// Writes a row for each of some items of this process, made by row(i, texts) of the item i from 0,
// whose number is numberof(i), ascending; all: the largest number of any process.
template <std::size_t files, typename Number, typename Row>
void writeshared(const std::array<textout*, files>& out, int count, int all, int blockrows,
                 Number numberof, Row row) {
    if (allranks().alone()) return writerows(out, count, blockrows, row);
    const int stretch = 1 << 12;  // numbers, some 8 MiB of the longest rows
    int next = 0;
    for (int from = 0; from <= all; from += stretch) {
        const int first = next;
        while (next < count && numberof(next) < from + stretch) ++next;
        const int pieces = (next - first + blockrows - 1) / blockrows;
        using rowsmade = std::array<std::vector<std::string>, files>;
        std::vector<rowsmade> made(static_cast<std::size_t>(pieces));
        parallelpieces(pieces, 1, [&](int begin, int end, int) {
            for (int p = begin; p < end; ++p) {
                std::array<rowtext, files> texts;
                const int last = std::min(first + (p + 1) * blockrows, next);
                for (int i = first + p * blockrows; i < last; ++i) {
                    for (rowtext& text : texts) text.clear();
                    row(i, texts);
                    for (std::size_t k = 0; k < files; ++k)
                        made[std::size_t(p)][k].emplace_back(texts[k].content());
                }
            }
        });
        rowparcel parcel(files);
        for (int i = first; i < next; ++i)
            for (std::size_t k = 0; k < files; ++k)
                parcel.add(numberof(i), k,
                           made[std::size_t((i - first) / blockrows)][k]
                               [std::size_t((i - first) % blockrows)]);
        mergerows({out.begin(), out.end()}, parcel);
    }
}
