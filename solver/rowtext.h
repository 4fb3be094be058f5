// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of result files: the text is made by all threads, a block of rows each, and written in
// order.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "core/numtext.h"
#include "core/textfile.h"
#include "solver/matrix.h"
#include "solver/parallel.h"

// Text of some rows.
class rowtext {
  public:
    void put(double value) { number(value); }
    void put(float value) { number(value); }
    void put(int value) { number(long(value)); }
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
    const int blockrows = 1024, blocks = 4 * threads();
    std::vector<rowtext> texts;
    texts.resize(std::size_t(blocks));
    for (int begin = 0; begin < count; begin += blockrows * blocks) {
        parallelpieces(blocks, 1, [&](int firstblock, int lastblock, int) {
            for (int b = firstblock; b < lastblock; ++b) {
                rowtext& text = texts[std::size_t(b)];
                text.clear();
                const int first = begin + b * blockrows;
                for (int i = first; i < std::min(first + blockrows, count); ++i) row(i, text);
            }
        });
        for (const rowtext& text : texts) out.raw(text.content());
    }
}
