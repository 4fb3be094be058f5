// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing of the database of standard profiles.
#include "tools/sectionfile.h"

#include <bit>
#include <cstring>

#include "core/session.h"
#include "core/textfile.h"

long sectcount;
array2<std::string> sectnames;
array2<float> sectdata;

static const int nnames = 3, nnumbers = 8;

std::string sectionsfile(bool binary) {
    return findnocase(appdir + (binary ? "/sections.dig" : "/sections.dat"));
}

namespace {
struct database {
    explicit database(long n) {
        names.alloc(n, nnames);
        data.alloc(n, nnumbers);
        data(0, 0) = float(n);
    }
    void install() {
        sectcount = names.upper1;
        std::swap(sectnames, names);
        std::swap(sectdata, data);
    }
    array2<std::string> names;
    array2<float> data;
};

// Reads a binary file cell by cell.
class binaryin {
  public:
    explicit binaryin(const std::string& path) : bytes(readwhole(path)), name(path) {}
    long whole() { return std::int32_t(bits(4)); }
    float single() { return std::bit_cast<float>(bits(4)); }
    std::string text() {
        const std::size_t length = bits(2);
        need(length);
        at += length;
        return toutf8(std::string_view(bytes).substr(at - length, length));
    }
    bool atend() const { return at == bytes.size(); }
    std::size_t left() const { return bytes.size() - at; }
    [[noreturn]] void fail(const std::string& what) const {
        throw runtimeerror{errtype, name + ", byte " + std::to_string(at) + ": " + what};
    }

  private:
    void need(std::size_t n) const {
        if (left() < n) fail("the file ends where more was expected");
    }
    std::uint32_t bits(std::size_t n) {
        need(n);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < n; ++i)
            value |= std::uint32_t(static_cast<unsigned char>(bytes[at++])) << (8 * i);
        return value;
    }
    std::string bytes, name;
    std::size_t at = 0;
};
}  // namespace

static std::string readtext(const std::string& path) {
    const std::string content = readwhole(path);
    const std::size_t shortest = 3 * 3 + 8 * 2;  // bytes of a record: "","","",0,0,0,0,0,0,0,0
    textin in(content, path);
    const long n = in.count();
    if (std::size_t(n) > content.size() / shortest)
        in.fail(errtype, "the file is too short for the " + std::to_string(n) +
                             " records that it announces");
    database base(n);
    for (long s = 1; s <= n; ++s) {
        for (int k = 1; k <= nnames; ++k) base.names(s, k) = in.quoted();
        for (int k = 1; k <= nnumbers; ++k) base.data(s, k) = in.single();
    }
    const bool more = !in.atend();
    base.install();
    return more ? "sections.dat goes on behind the " + std::to_string(n) +
                      " records that its first line counts"
                : "";
}

static void readbinary(const std::string& path) {
    binaryin in(path);
    const long n = in.whole();
    const std::size_t shortest = 2 * (nnames + 1) + 4 * (nnumbers + 1);  // bytes of one row
    if (n < 0 || std::size_t(n) > in.left() / shortest)
        in.fail("the file is too short for the " + std::to_string(n) +
                " records that it announces");
    database base(n);
    for (int k = 0; k <= nnames; ++k)
        for (long s = 0; s <= n; ++s) base.names(s, k) = in.text();
    for (int k = 0; k <= nnumbers; ++k)
        for (long s = 0; s <= n; ++s) base.data(s, k) = in.single();
    if (!in.atend() || base.data(0, 0) != float(n)) in.fail("the file is no database of sections");
    base.install();
}

std::string readsections(bool binary) {
    const std::string path = sectionsfile(binary);
    if (!binary) return readtext(path);
    readbinary(path);
    return "";
}

static void putbits(std::string& out, std::uint32_t value, int n) {
    for (int i = 0; i < n; ++i) out += char(value >> (8 * i) & 255);
}

void writesectionsbinary() {
    const std::size_t longest = 65535;
    std::string image;
    putbits(image, std::uint32_t(sectcount), 4);
    for (int k = 0; k <= nnames; ++k)
        for (long s = 0; s <= sectcount; ++s) {
            const std::string text = sectnames(s, k).substr(0, longest);
            putbits(image, std::uint32_t(text.size()), 2);
            image += text;
        }
    for (int k = 0; k <= nnumbers; ++k)
        for (long s = 0; s <= sectcount; ++s)
            putbits(image, std::bit_cast<std::uint32_t>(sectdata(s, k)), 4);
    textout out(sectionsfile(true));
    out.raw(image);
    out.commit();
}
