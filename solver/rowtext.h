// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of result files: the text is made by all threads, a block of rows each, while one of them
// writes what was made before.
#pragma once

#include <algorithm>
#include <string>
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
    void put(const keptnumber& kept) {
        comma();
        text.append(kept.text, kept.length);
    }
    void put(const vec3& at) {
        for (int k = 0; k < 3; ++k) put(at[k]);
    }
    void put(const double* values, int count) {
        for (int k = 0; k < count; ++k) put(values[k]);
    }
    void endline() {
        text += "\r\n";
        started = false;
    }
    const std::string& content() const { return text; }
    void clear() { text.clear(); }

  private:
    template <typename Number>
    void number(Number value) {
        comma();
        const std::size_t at = text.size();
        text.resize(at + longestnumber);
        char* const p = text.data() + at;
        text.resize(at + std::size_t(writenumber(p, value) - p));
    }
    void comma() {
        if (started) text += ',';
        started = true;
    }
    std::string text;
    bool started = false;
};
// Writes rows 0..count-1, each made by row(i, text).
template <typename Row>
void writerows(textout& out, int count, Row row) {
    const int blockrows = 512, blocks = 8 * threads();
    std::vector<rowtext> texts, made;
    texts.resize(std::size_t(blocks));
    made.resize(std::size_t(blocks));
    const auto writemade = [&] {
        for (const rowtext& text : made) out.raw(text.content());
    };
    for (int begin = 0; begin < count; begin += blockrows * blocks) {
        parallelpieces(1 + blocks, 1, [&](int firstpiece, int lastpiece, int) {
            for (int piece = firstpiece; piece < lastpiece; ++piece) {
                if (piece == 0) {
                    writemade();
                    continue;
                }
                rowtext& text = texts[std::size_t(piece) - 1];
                text.clear();
                const int first = begin + (piece - 1) * blockrows;
                for (int i = first; i < std::min(first + blockrows, count); ++i) row(i, text);
            }
        });
        std::swap(texts, made);
    }
    writemade();
}
