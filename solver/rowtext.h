// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of result files: the text is made by all threads, a block of rows each, while one of them
// writes what was made before.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/numtext.h"
#include "core/textfile.h"
#include "solver/matrix.h"
#include "solver/parallel.h"

// A number's text, kept to be written again.
struct keptnumber {
    char text[longestnumber] = {};
    std::size_t length = 0;
    explicit keptnumber(float number = 0) {
        length = std::size_t(writenumber(text, number) - text);
    }
};

// Numbers of one kind along a member, each with the decimals that tell the largest to seven digits:
// whole multiples of the last place, which are written in a tenth of the time that the fewest
// digits of a Single take. What stays the same all along is written once.
class numbercolumn {
  public:
    explicit numbercolumn(double largest = 0);
    // Writes a number no larger than the largest at p, which has room for longestnumber characters
    // and may lose all of them; returns the place behind the last one. What was written before
    // still stands where it was written.
    char* write(char* p, double value) {
        const long multiple = nearest(value * factor);
        if (multiple == last && length > 0) {
            std::memmove(p, former, longestnumber);  // two moves; it may reach into what comes
        } else {
            last = multiple;
            former = p;
            length = std::size_t(writemultiple(p) - p);
        }
        return p + length;
    }

  private:
    // As lround does, in place of a call.
    static long nearest(double value) {
        const long whole = long(value);
        const double rest = value - double(whole);
        return whole + (rest >= 0.5) - (rest <= -0.5);
    }
    char* writemultiple(char* p) const;
    int decimals = 0;
    double factor = 0;
    long last = 0;
    const char* former = nullptr;
    std::size_t length = 0;
};

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
    void put(const keptnumber& kept) {
        comma();
        std::memcpy(room(longestnumber), kept.text, longestnumber);  // all of it: two moves
        used += kept.length;
    }
    // Room for so many characters, of which those before the end are kept; for texts with their own
    // commas.
    char* place(std::size_t most) { return room(most); }
    void putto(const char* end) { used = std::size_t(end - text.data()); }
    void put(std::string_view values) {
        comma();
        std::copy(values.begin(), values.end(), room(values.size()));
        used += values.size();
    }
    void put(const vec3& at) {
        for (int k = 0; k < 3; ++k) put(at[k]);
    }
    void put(const double* values, int count) {
        for (int k = 0; k < count; ++k) put(values[k]);
    }
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

// Writes rows 0..count-1 to some files at once, each made by row(i, texts), a text a file. A block
// of rows is best some 50 KiB of text: longer ones leave the cache before they are written.
template <std::size_t files, typename Row>
void writerows(const std::array<textout*, files>& out, int count, int blockrows, Row row) {
    const int blocks = 8 * threads();
    std::vector<std::array<rowtext, files>> texts, made;
    texts.resize(std::size_t(blocks));
    made.resize(std::size_t(blocks));
    const auto writemade = [&] {
        for (const auto& block : made)
            for (std::size_t k = 0; k < files; ++k) out[k]->raw(block[k].content());
    };
    for (int begin = 0; begin < count; begin += blockrows * blocks) {
        parallelpieces(1 + blocks, 1, [&](int firstpiece, int lastpiece, int) {
            for (int piece = firstpiece; piece < lastpiece; ++piece) {
                if (piece == 0) {
                    writemade();
                    continue;
                }
                auto& block = texts[std::size_t(piece) - 1];
                for (rowtext& text : block) text.clear();
                const int first = begin + (piece - 1) * blockrows;
                for (int i = first; i < std::min(first + blockrows, count); ++i) row(i, block);
            }
        });
        std::swap(texts, made);
    }
    writemade();
}

// The same to one file, each row made by row(i, text).
template <typename Row>
void writerows(textout& out, int count, int blockrows, Row row) {
    writerows(std::array<textout*, 1>{&out}, count, blockrows,
              [&](int i, std::array<rowtext, 1>& text) { row(i, text[0]); });
}
