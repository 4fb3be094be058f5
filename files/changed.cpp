// SPDX-License-Identifier: GPL-3.0-or-later
// The mark is a checksum over all that the file set holds of the model.
#include "files/changed.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>

#include "core/journal.h"
#include "core/model.h"

namespace {

class checksum {
  public:
    template <typename T>
    void add(std::span<const T> cells) {
        mix(cells.data(), cells.size_bytes());
    }
    template <typename T>
    void add(T value) {
        mix(&value, sizeof value);
    }
    void add(const std::string& text) {
        add(text.size());
        mix(text.data(), text.size());
    }
    std::uint64_t value = 0;

  private:
    // Eight bytes a step; the factor is the golden ratio of 2^64, odd, so that no step loses a bit.
    void mix(const void* from, std::size_t bytes) {
        const auto* at = static_cast<const char*>(from);
        for (; bytes > 0; at += 8) {
            std::uint64_t word = 0;
            const std::size_t n = bytes < 8 ? bytes : 8;
            std::memcpy(&word, at, n);
            value = std::rotl((value ^ word) * 0x9E3779B97F4A7C15u, 29);
            bytes -= n;
        }
    }
};

std::uint64_t saved = 0;

}  // namespace

static void addgeometry(checksum& sum) {
    sum.add(nnodes());
    for (int n = 1; n <= nnodes(); ++n) sum.add(std::as_const(nodes).row(0, n).first(3));
    for (int e = 1; e <= nelems(); ++e) {
        if (elems(e, 0) == 0) continue;  // free: no file has it
        sum.add(std::as_const(elems).row(e));
        sum.add(egroup(e));
        sum.add(rotpo(e));
    }
    for (int g = 1; g <= ngraphics(); ++g)
        if (graphics(g, 0, 0) != 0)
            for (int j = 0; j <= 3; ++j) sum.add(std::as_const(graphics).row(g, j));
    for (int p = 1; p <= patches(0, 0, 0); ++p)
        for (int j = 0; j <= patches(p, 0, 0); ++j) {
            const auto row = std::as_const(patches).row(p, j);
            sum.add(row.first(j == 0 ? 3 : std::size_t(row[0]) + 1));
        }
}

static void addconditions(checksum& sum) {
    for (int i = 1; i <= ncon; ++i) {
        sum.add(connode(i));
        sum.add(condof(i));
        sum.add(conval(i));
    }
    sum.add(nlc());
    for (int lc = 1; lc <= nlc(); ++lc) {
        sum.add(lcname(lc));
        sum.add(lctype(lc));
        sum.add(std::as_const(lcpar).row(lc));
        for (int i = 1; i <= loadnode(lc, 0); ++i) {
            sum.add(loadnode(lc, i));
            sum.add(loaddof(lc, i));
            sum.add(loadval(lc, i));
        }
        for (int i = 1; i <= int(elemload(lc, 0, 0)); ++i)
            sum.add(std::as_const(elemload).row(lc, i));
    }
    for (int c = 1; c <= ncomb(); ++c) {
        sum.add(lcombname(c));
        sum.add(std::as_const(lcomb).row(c).subspan(1, std::size_t(nlc())));
    }
}

static void addgroups(checksum& sum) {
    for (int g = 1; g <= ngroups(); ++g) {
        sum.add(groupname(g));
        sum.add(std::as_const(groups).row(g));
        for (int i = 1; i <= 6; ++i) sum.add(std::as_const(groupmat).row(g, i));
    }
}

static std::uint64_t checksumofmodel() {
    checksum sum;
    addgeometry(sum);
    addconditions(sum);
    addgroups(sum);
    sum.add(commenttext);
    return sum.value;
}

void markassaved() {
    saved = checksumofmodel();
    notesaved();
}

bool ischanged() {
    return checksumofmodel() != saved;
}
