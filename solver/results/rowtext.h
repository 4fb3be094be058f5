// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of result files: the text is made by all threads, a block of rows each, while one of them
// writes what was made before.
#pragma once

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

#include "core/textfile.h"
#include "solver/base/digits.h"
#include "solver/base/matrix.h"
#include "solver/base/parallel.h"

// Text of some rows.
class rowtext {
  public:
    void put(double value) {
        if (value == 0)
            put(std::string_view("0"));
        else
            number(value);
    }
    void put(int value) { number(long(value)); }
    // Room for so many characters, of which those before the end are kept; for texts with their own
    // commas.
    char* place(std::size_t most) { return room(most); }
    void putto(const char* end) { used = std::size_t(end - text.data()); }
    void put(std::string_view values) {
        comma();
        std::copy(values.begin(), values.end(), room(values.size()));
        used += values.size();
    }
    void put(const double* values, int count) {
        for (int k = 0; k < count; ++k) put(values[k]);
    }
    // In ten digits at most.
    void putrounded(const double* values, int count) {
        char* p = room(std::size_t(count) * (longestnumber + 1));
        for (int k = 0; k < count; ++k) {
            if (started) *p++ = ',';
            started = true;
            p = writerounded(p, values[k]);
        }
        putto(p);
    }
    void putrounded(const vec3& at) { putrounded(at.data(), 3); }
    void endline() {
        char* const p = room(2);
        p[0] = '\r';
        p[1] = '\n';
        used += 2;
        started = false;
    }
    std::string_view content() const { return {text.data(), used}; }
    void clear() { used = 0; }

  private:
    template <typename Number>
    void number(Number value) {
        comma();
        char* const p = room(longestnumber);
        used += std::size_t(writenumber(p, value) - p);
    }
    void comma() {
        if (started) {
            *room(1) = ',';
            ++used;
        }
        started = true;
    }
    char* room(std::size_t length) {
        if (used + length > text.size()) text.resize(2 * text.size() + length);
        return text.data() + used;
    }
    std::vector<char> text;
    std::size_t used = 0;
    bool started = false;
};

// Blocks of rows in the hands of all threads: a thread writes the next one in the file's order when
// that is made and nobody writes, else it makes another, else it waits for one of these.
class blockorder {
  public:
    // Of so many blocks `room` at most are made and not yet written.
    blockorder(int count, int room) : blocks(count), made(std::size_t(room), 0) {}
    struct task {
        int block;
        bool write;
    };
    // False when all are written or one could not be made.
    bool next(task& t);
    void done(const task& t);
    void abandon();  // the task failed: nobody waits for it

  private:
    std::mutex guard;
    std::condition_variable changed;
    int blocks, begun = 0, written = 0;
    bool writing = false;
    std::vector<char> made;  // by block within the room: to be written
};

// Writes rows 0..count-1 to some files at once, each made by row(i, texts), a text a file. A block
// of rows is best some 50 KiB of text: longer ones leave the cache before they are written.
template <std::size_t files, typename Row>
void writerows(const std::array<textout*, files>& out, int count, int blockrows, Row row) {
    std::vector<std::array<rowtext, files>> texts(std::size_t(8 * threads()));
    blockorder order((count + blockrows - 1) / blockrows, int(texts.size()));
    const auto work = [&](const blockorder::task& t) {
        auto& block = texts[std::size_t(t.block) % texts.size()];
        if (t.write) {
            for (std::size_t k = 0; k < files; ++k) out[k]->raw(block[k].content());
            return;
        }
        for (rowtext& text : block) text.clear();
        const int first = t.block * blockrows;
        for (int i = first; i < std::min(first + blockrows, count); ++i) row(i, block);
    };
    eachthread([&](int) {
        try {
            for (blockorder::task t{}; order.next(t); order.done(t)) work(t);
        } catch (...) {
            order.abandon();
            throw;
        }
    });
}

// The same to one file, each row made by row(i, text).
template <typename Row>
void writerows(textout& out, int count, int blockrows, Row row) {
    writerows(std::array<textout*, 1>{&out}, count, blockrows,
              [&](int i, std::array<rowtext, 1>& text) { row(i, text[0]); });
}
