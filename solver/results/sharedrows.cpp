// SPDX-License-Identifier: GPL-3.0-or-later
#include "solver/results/sharedrows.h"

#include <cstring>

// The number, the length of each text, the texts.
void rowmerger::add(std::string& parcel, int number, std::span<const std::string_view> texts) {
    const auto put = [&](int value) {
        parcel.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    put(number);
    for (const std::string_view text : texts) put(int(text.size()));
    for (const std::string_view text : texts) parcel += text;
}

namespace {
// The pieces of a parcel one by one.
class opened {
  public:
    opened(std::string_view parcel, std::size_t files) : rest(parcel), lengths(files) { next(); }
    bool done() const { return number < 0; }
    int first() const { return number; }
    void writeto(const std::vector<textout*>& out) {
        for (std::size_t k = 0; k < out.size(); ++k) out[k]->raw(take(std::size_t(lengths[k])));
        next();
    }

  private:
    void next() {
        number = -1;
        if (rest.empty()) return;
        number = takenumber();
        for (int& length : lengths) length = takenumber();
    }
    int takenumber() {
        int value = 0;
        std::memcpy(&value, take(sizeof value).data(), sizeof value);
        return value;
    }
    std::string_view take(std::size_t count) {
        const std::string_view taken = rest.substr(0, count);
        rest.remove_prefix(count);
        return taken;
    }
    std::string_view rest;
    std::vector<int> lengths;
    int number = -1;
};
}  // namespace

void rowmerger::write() const {
    std::vector<opened> parcels;
    for (const std::string& one : inwork) parcels.emplace_back(one, out.size());
    for (;;) {
        opened* lowest = nullptr;
        for (opened& one : parcels)
            if (!one.done() && (!lowest || one.first() < lowest->first())) lowest = &one;
        if (!lowest) return;
        lowest->writeto(out);
    }
}

// Strings change places, so that their memory serves again.
void rowmerger::merge(std::string& parcel) {
    arrived.resize(std::size_t(allranks().count()));
    std::size_t from = 0;
    allranks().handin(parcel, [&](std::string& theirs) { arrived[from++].swap(theirs); });
    parcel.clear();
    if (!allranks().first()) return;
    if (writing.valid()) writing.get();
    arrived.swap(inwork);
    writing = std::async([this] { write(); });
}

void rowmerger::finish() {
    if (writing.valid()) writing.get();
    allranks().settle();
}
