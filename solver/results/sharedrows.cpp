// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/results/sharedrows.h"

#include <cstring>
#include <utility>

void rowparcel::add(int number, std::size_t file, std::string_view text) {
    if (file == 0) numbers.push_back(number);
    texts[file] += text;
    ends[file].push_back(int(texts[file].size()));
}

// How many rows, their numbers, and a file the ends of its rows and their text.
std::string rowparcel::packed() const {
    std::string bytes;
    const auto put = [&](const int* values, std::size_t count) {
        bytes.append(reinterpret_cast<const char*>(values), count * sizeof(int));
    };
    const int count = int(numbers.size());
    put(&count, 1);
    put(numbers.data(), numbers.size());
    for (std::size_t k = 0; k < texts.size(); ++k) {
        put(ends[k].data(), ends[k].size());
        bytes += texts[k];
    }
    return bytes;
}

namespace {
// What packed has made.
struct opened {
    std::string bytes;
    std::vector<int> numbers;
    std::vector<std::vector<int>> ends;
    std::vector<const char*> texts;
    std::size_t next = 0;

    opened(std::string packed, std::size_t files) : bytes(std::move(packed)) {
        const char* at = bytes.data();
        int count = 0;
        const auto take = [&](int* to, std::size_t n) {
            if (n > 0) std::memcpy(to, at, n * sizeof(int));
            at += n * sizeof(int);
        };
        take(&count, 1);
        numbers.resize(std::size_t(count));
        take(numbers.data(), numbers.size());
        for (std::size_t k = 0; k < files; ++k) {
            ends.emplace_back(numbers.size());
            take(ends[k].data(), numbers.size());
            texts.push_back(at);
            at += count > 0 ? ends[k].back() : 0;
        }
    }
    std::string_view row(std::size_t file) const {
        const int begin = next > 0 ? ends[file][next - 1] : 0;
        return {texts[file] + begin, std::size_t(ends[file][next] - begin)};
    }
};
}  // namespace

void mergerows(const std::vector<textout*>& out, const rowparcel& mine) {
    std::vector<std::unique_ptr<opened>> parcels;
    allranks().handin(mine.packed(), [&](std::string packed) {
        parcels.push_back(std::make_unique<opened>(std::move(packed), out.size()));
    });
    for (;;) {
        opened* lowest = nullptr;
        for (const auto& one : parcels)
            if (one->next < one->numbers.size() &&
                (!lowest || one->numbers[one->next] < lowest->numbers[lowest->next]))
                lowest = one.get();
        if (!lowest) return;
        for (std::size_t k = 0; k < out.size(); ++k) out[k]->raw(lowest->row(k));
        ++lowest->next;
    }
}
