// SPDX-License-Identifier: GPL-3.0-or-later
// The pairs of group code and value that a drawing exchange file consists of, as text or binary.
#pragma once

#include <cstdint>
#include <string_view>

#include "exchange/textlines.h"

struct dxftag {
    int code = 0;
    std::string_view text;  // of a text file also the numbers
    double number = 0;      // of a binary file
    bool isnumber = false;
    long line = 0;  // of the value in a text file; 0 in a binary one
};

class dxftags {
  public:
    explicit dxftags(const std::string& path);
    dxftags(std::string content, std::string name);
    bool next(dxftag& tag);  // false at the end of the file; comments are passed over
    // Each throws with file and line.
    double real(const dxftag& tag) const;
    long whole(const dxftag& tag) const;
    [[noreturn]] void fail(const dxftag& tag, const std::string& what) const;
    [[noreturn]] void failatend(const std::string& what) const;
    bool isbinary() const { return binary; }
    const std::string& name() const { return in.name(); }
    double share() const { return in.share(); }
    long lines() const { return in.number(); }

  private:
    void begin();
    bool nexttext(dxftag& tag);
    bool nextbinary(dxftag& tag);
    std::string_view take(std::size_t bytes);
    std::string_view takestring();
    std::uint64_t takewhole(std::size_t bytes);
    [[noreturn]] void failend() const;
    textlines in;
    bool binary = false;
    bool widecodes = false;  // two bytes each, since Release 13
};
