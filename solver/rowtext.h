// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of result files: the text is made by all threads, a block of rows each, while one of them
// writes what was made before.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "core/numtext.h"
#include "core/textfile.h"
#include "solver/matrix.h"
#include "solver/parallel.h"

// A number with its text, kept for the case that the same one comes again.
struct keptnumber {
    float value;
    char text[longestnumber];
    std::size_t length;
    explicit keptnumber(float number = 0) : value(number) {
        length = std::size_t(writenumber(text, number) - text);
    }
};

// Text of some rows.
class rowtext {
  public:
    void put(double value) { number(value); }
    void put(float value) { number(value); }
    void put(int value) { number(long(value)); }
    void put(float value, keptnumber& kept) {
        if (value != kept.value) kept = keptnumber(value);
        put(kept);
    }
    void put(const keptnumber& kept) { put(std::string_view(kept.text, kept.length)); }
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

// Writes rows 0..count-1 to some files at once, each made by row(i, texts), a text a file.
template <std::size_t files, typename Row>
void writerows(const std::array<textout*, files>& out, int count, Row row) {
    const int blockrows = 512 / int(files), blocks = 8 * threads();
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
void writerows(textout& out, int count, Row row) {
    writerows(std::array<textout*, 1>{&out}, count,
              [&](int i, std::array<rowtext, 1>& text) { row(i, text[0]); });
}
