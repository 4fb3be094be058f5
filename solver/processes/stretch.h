// SPDX-License-Identifier: GPL-3.0-or-later
// Items 1.. dealt by their numbers: each process has a stretch of them. And lists of items that all
// processes give each other.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "solver/processes/ranks.h"

class stretches {
  public:
    explicit stretches(int items) {
        const std::int64_t me = allranks().me(), processes = allranks().count();
        share = (items + processes - 1) / processes;
        begin = int(std::min<std::int64_t>(me * share, items)) + 1;
        end = int(std::min<std::int64_t>((me + 1) * share, items)) + 1;
    }
    std::size_t homeof(int item) const { return std::size_t((item - 1) / share); }
    // Of this process; first is one more than the last item where there is none.
    int first() const { return begin; }
    int count() const { return end - begin; }
    bool holds(int item) const { return item >= begin && item < end; }
    std::vector<int> numbers() const {  // with slot 0
        std::vector<int> list = {0};
        for (int i = 0; i < count(); ++i) list.push_back(first() + i);
        return list;
    }

  private:
    std::int64_t share;
    int begin, end;
};

template <typename Item>
std::vector<std::vector<Item>> everyrank() {
    return std::vector<std::vector<Item>>(std::size_t(allranks().count()));
}

// What each process gets from all, in their order.
template <typename Item>
std::vector<std::vector<Item>> exchange(std::vector<std::vector<Item>> toeach) {
    std::vector<std::string> bytes;
    for (std::vector<Item>& list : toeach) {
        bytes.emplace_back(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(Item));
        list = {};
    }
    bytes = allranks().exchange(std::move(bytes));
    for (std::size_t r = 0; r < bytes.size(); ++r) {
        toeach[r].resize(bytes[r].size() / sizeof(Item));
        if (!bytes[r].empty()) std::memcpy(toeach[r].data(), bytes[r].data(), bytes[r].size());
        bytes[r] = {};
    }
    return toeach;
}

template <typename Item>
std::vector<Item> flattened(const std::vector<std::vector<Item>>& lists) {
    std::vector<Item> list;
    for (const std::vector<Item>& one : lists) list.insert(list.end(), one.begin(), one.end());
    return list;
}
