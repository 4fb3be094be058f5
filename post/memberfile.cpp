// SPDX-License-Identifier: GPL-3.0-or-later
// Records of forces along members.
#include "post/memberfile.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "core/numtext.h"
#include "core/runtime.h"

const quantityrow quantityrows[memberquantities] = {
    {"N", "Normal force", "F"},          {"Vy", "Shear force along e2", "F"},
    {"Vz", "Shear force along e3", "F"}, {"T", "Torsion", "F L"},
    {"My", "Moment about e2", "F L"},    {"Mz", "Moment about e3", "F L"},
    {"v", "Deflection along e2", "L"},   {"w", "Deflection along e3", "L"},
};

std::vector<int> tellingstations(const memberline& m) {
    const int last = memberstations - 1;
    bool wanted[memberstations] = {};
    wanted[0] = wanted[last] = true;
    for (const auto& value : m.value) {
        const auto [low, high] = std::minmax_element(value, value + memberstations);
        const double nothing = 1e-6 * std::max(std::fabs(*low), std::fabs(*high));
        const double ends[] = {std::min(value[0], value[last]), std::max(value[0], value[last])};
        if (*low < ends[0] - nothing) wanted[low - value] = true;
        if (*high > ends[1] + nothing) wanted[high - value] = true;
    }
    std::vector<int> stations;
    for (int i = 0; i <= last; ++i)
        if (wanted[i]) stations.push_back(i);
    return stations;
}

memberfile::memberfile(const std::string& path, int elements)
    : name(path), file(std::fopen(path.c_str(), "rb")) {
    if (!file) throw runtimeerror{errfilenotfound, "File not found: " + path};
    scan(elements);
}

// A record is one line: element, number of stations, their values. A case ends with END.
void memberfile::scan(int elements) {
    const std::size_t block = 1 << 20, longestword = 16;
    std::vector<char> text(block);
    std::size_t held = 0;  // bytes in text
    long long before = 0;  // bytes of the file before them
    bool open = false;     // a case has begun
    long row = 0;
    const auto damaged = [&](const std::string& what) {
        throw runtimeerror{errtype, name + ", line " + numbertext(row) + ": " + what};
    };
    const auto takeline = [&](const char* at, const char* end, long long place) {
        ++row;
        if (*at == '"') ++at;
        if (end - at >= 3 && std::memcmp(at, "END", 3) == 0) {
            if (!open) places.emplace_back(std::size_t(elements) + 1, -1);
            open = false;
            return;
        }
        int e = 0;
        const auto [behind, error] = std::from_chars(at, end, e);
        if (error != std::errc() || behind == end || *behind != ',')
            damaged("an element number or END was expected");
        if (e < 1 || e > elements)
            damaged("the forces are of element " + numbertext(e) +
                    ", the model in hand has elements 1 to " + numbertext(elements));
        if (!open) places.emplace_back(std::size_t(elements) + 1, -1);
        open = true;
        places.back()[std::size_t(e)] = place;
    };
    bool within = false;  // the line has begun before what is held
    for (bool atend = false; !atend;) {
        const std::size_t got = std::fread(text.data() + held, 1, block - held, file.get());
        held += got;
        atend = got == 0;
        std::size_t at = 0;
        while (at < held) {
            if (!within) {
                if (held - at < longestword && !atend) break;  // its first word may be cut
                const char first = text[at];
                if (first != '\r' && first != '\n' && first != ' ')
                    takeline(&text[at], text.data() + held, before + (long long)(at));
            }
            const void* const end = std::memchr(&text[at], '\n', held - at);
            within = end == nullptr;
            at = within ? held : std::size_t(static_cast<const char*>(end) - text.data()) + 1;
        }
        std::memmove(text.data(), text.data() + at, held - at);
        before += (long long)(at);
        held -= at;
    }
    if (open) damaged("the file is cut short: the last load case has no END");
    if (places.empty()) damaged("the file holds no load case");
}

bool memberfile::holds(int e) const {
    return e >= 1 && e < int(places[0].size()) && places[0][std::size_t(e)] >= 0;
}

void memberfile::fail(int e, int lc) const {
    throw runtimeerror{errtype, name + ": the record of element " + numbertext(e) +
                                    " in load case " + numbertext(lc) +
                                    " is damaged; analyse again"};
}

// Adds factor times the record.
void memberfile::readrecord(int e, int lc, double factor, double (*sum)[memberstations]) {
    const long long place = places[std::size_t(lc - 1)][std::size_t(e)];
    if (place < 0) fail(e, lc);
    const std::size_t usual = 4096, longest = 16384;
    for (std::size_t size = usual;; size = longest) {
        line.resize(size);
        const ssize_t got = pread(fileno(file.get()), line.data(), size, place);
        if (got <= 0) fail(e, lc);
        const void* const end = std::memchr(line.data(), '\n', std::size_t(got));
        if (!end && size < longest && std::size_t(got) == size) continue;
        line.resize(end ? std::size_t(static_cast<const char*>(end) - line.data())
                        : std::size_t(got));
        break;
    }
    const char *at = line.data(), *const end = at + line.size();
    const auto number = [&] {
        double value = 0;
        const auto [behind, error] = std::from_chars(at, end, value);
        if (error != std::errc() || !std::isfinite(value)) fail(e, lc);
        at = behind < end && *behind == ',' ? behind + 1 : behind;
        return value;
    };
    if (number() != e || number() != memberstations) fail(e, lc);
    for (int i = 0; i < memberstations; ++i) {
        number();  // the place
        for (int q = 0; q < memberquantities; ++q) sum[q][i] += factor * number();
    }
}

static memberline asline(const double (*sum)[memberstations]) {
    const double most = std::numeric_limits<float>::max();
    memberline m;
    for (int q = 0; q < memberquantities; ++q)
        for (int i = 0; i < memberstations; ++i)
            m.value[q][i] = float(std::clamp(sum[q][i], -most, most));
    return m;
}

memberline memberfile::sum(int e, std::span<const float> factors) {
    double sums[memberquantities][memberstations] = {};
    for (int lc = 1; lc <= cases() && lc <= int(factors.size()); ++lc)
        if (const float f = factors[std::size_t(lc - 1)]; f != 0) readrecord(e, lc, f, sums);
    return asline(sums);
}

void memberfile::read(int e, std::vector<memberline>& one) {
    one.resize(std::size_t(cases()));
    for (int lc = 1; lc <= cases(); ++lc) {
        double sums[memberquantities][memberstations] = {};
        readrecord(e, lc, 1, sums);
        one[std::size_t(lc - 1)] = asline(sums);
    }
}
