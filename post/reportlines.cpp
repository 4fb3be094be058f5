// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of a report.
#include "post/reportlines.h"

#include <charconv>

#include "core/numtext.h"

reportlines::reportlines(const std::string& target) : out(target) {}

static int charactersof(std::string_view utf8) {
    int count = 0;
    for (const char c : utf8)
        if ((static_cast<unsigned char>(c) & 0xc0) != 0x80) ++count;
    return count;
}

reportlines& reportlines::text(std::string_view utf8) {
    row.append(utf8);
    at += charactersof(utf8);
    return *this;
}

reportlines& reportlines::cut(std::string_view utf8, int most) {
    std::size_t end = 0;
    while (end < utf8.size() && most-- > 0) do
            ++end;
        while (end < utf8.size() && (static_cast<unsigned char>(utf8[end]) & 0xc0) == 0x80);
    return text(utf8.substr(0, end));
}

reportlines& reportlines::column(int wanted) {
    if (wanted > at) {
        row.append(std::size_t(wanted - at), ' ');
        at = wanted;
    }
    return *this;
}

reportlines& reportlines::zone() {
    return column((at / zonewidth + 1) * zonewidth);
}

// Digits for which a number of this shortest text fits room characters behind its sign.
static int digitsthatfit(std::string_view shortest, int room) {
    if (shortest.front() == '-') shortest.remove_prefix(1);
    const std::size_t mark = shortest.find('E');
    if (mark != shortest.npos) return room - 1 - int(shortest.size() - mark);
    if (shortest.front() != '0') return room - 1;
    return room - 2 - int(shortest.find_first_not_of('0', 2) - 2);
}

template <typename Number>
reportlines& reportlines::fitted(Number number) {
    const int room = zonewidth - 2;  // behind the sign, and one blank before the next zone
    char buffer[longestnumber + 1] = " ";
    char* const begin = buffer + 1;
    char* last = writenumber(begin, number);
    const char* const first = *begin == '-' ? begin : buffer;
    if (last - first > room + 1) {
        int digits = digitsthatfit({begin, last}, room);
        do
            last = std::to_chars(begin, buffer + sizeof buffer, number, std::chars_format::general,
                                 digits--)
                       .ptr;
        while (last - first > room + 1);
        for (char* c = begin; c != last; ++c)
            if (*c == 'e') *c = 'E';
    }
    row.append(first, std::size_t(last - first));
    at += int(last - first);
    return *this;
}

reportlines& reportlines::raw(float number) {
    return fitted(number);
}

reportlines& reportlines::raw(double number) {
    return fitted(number);
}

reportlines& reportlines::raw(int number) {
    return fitted(double(number));
}

reportlines& reportlines::sci(double number) {
    char buffer[longestnumber];
    const double plain = number + 0.0;  // no negative zero
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, plain, std::chars_format::scientific, 2);
    for (char* c = buffer; c != result.ptr; ++c)
        if (*c == 'e') *c = 'E';
    row.append(buffer, result.ptr);
    at += int(result.ptr - buffer);
    return *this;
}

void reportlines::end() {
    out.raw(row.append("\r\n"));
    row.clear();
    at = 0;
}

void reportlines::line(std::string_view utf8) {
    text(utf8).end();
}

void reportlines::empty(int count) {
    while (count-- > 0) end();
}

void reportlines::commit() {
    out.commit();
}
