// SPDX-License-Identifier: GPL-3.0-or-later
// Group codes and values.
#include "exchange/dxftags.h"

#include <bit>
#include <charconv>
#include <cmath>

static const std::string_view binarymark("AutoCAD Binary DXF\r\n\x1a\0", 22);

dxftags::dxftags(const std::string& path) : in(path) {
    begin();
}

dxftags::dxftags(std::string content, std::string name) : in(std::move(content), std::move(name)) {
    begin();
}

void dxftags::begin() {
    binary = in.rest().starts_with(binarymark);
    if (!binary) return;
    in.pass(binarymark.size());
    // The first code is 0, and a letter follows it.
    const std::string_view rest = in.rest();
    widecodes = rest.size() > 1 && rest[1] == 0;
}

bool dxftags::next(dxftag& tag) {
    const int comment = 999;
    do
        if (!(binary ? nextbinary(tag) : nexttext(tag))) return false;
    while (tag.code == comment);
    return true;
}

// --- text ---------------------------------------------------------------------------------------

bool dxftags::nexttext(dxftag& tag) {
    std::string_view code;
    if (!in.next(code)) return false;
    code = trimmed(code);
    const auto result = std::from_chars(code.data(), code.data() + code.size(), tag.code);
    if (code.empty() || result.ec != std::errc() || result.ptr != code.data() + code.size()) {
        if (code.empty() && trimmed(in.rest()).find_first_not_of("\r\n\x1a") == code.npos)
            return false;  // empty lines behind the last pair
        in.fail("a group code was expected, found " + shown(code));
    }
    tag.isnumber = false;
    if (!in.next(tag.text))
        in.fail("the file ends after this line: the value of group code " + numbertext(tag.code) +
                " is missing");
    tag.line = in.number();
    return true;
}

double dxftags::real(const dxftag& tag) const {
    if (tag.isnumber && !std::isfinite(tag.number)) fail(tag, "a number was expected");
    if (tag.isnumber) return tag.number;
    double number = 0;
    if (!readreal(tag.text, number)) fail(tag, "a number was expected, found " + shown(tag.text));
    return number;
}

long dxftags::whole(const dxftag& tag) const {
    long number = 0;
    if (!tag.isnumber && readwholenumber(tag.text, number)) return number;
    const double most = 1e15, value = real(tag);  // some write 70 as 70.0
    if (!(value > -most && value < most)) fail(tag, "a whole number was expected");
    return long(value);
}

void dxftags::fail(const dxftag& tag, const std::string& what) const {
    if (!binary) in.failat(tag.line, "group code " + numbertext(tag.code) + ": " + what);
    throw runtimeerror{errtype, name() + ", group code " + numbertext(tag.code) + ": " + what};
}

void dxftags::failatend(const std::string& what) const {
    if (!binary) in.fail(what);
    throw runtimeerror{errpastend, name() + ": " + what};
}

// --- binary -------------------------------------------------------------------------------------

void dxftags::failend() const {
    throw runtimeerror{errpastend, name() + ": the file ends in the middle of a value"};
}

std::string_view dxftags::take(std::size_t bytes) {
    if (in.rest().size() < bytes) failend();
    const std::string_view taken = in.rest().substr(0, bytes);
    in.pass(bytes);
    return taken;
}

std::string_view dxftags::takestring() {
    const std::size_t end = in.rest().find('\0');
    if (end == std::string_view::npos) failend();
    const std::string_view taken = take(end);
    in.pass(1);
    return taken;
}

std::uint64_t dxftags::takewhole(std::size_t bytes) {
    std::uint64_t number = 0;
    const std::string_view taken = take(bytes);
    for (std::size_t i = bytes; i-- > 0;) number = number << 8 | std::uint8_t(taken[i]);
    return number;
}

namespace {
enum class valuekinds { text, real, int8, int16, int32, int64, bytes };
struct coderange {
    int last;  // codes up to it that are in no row before
    valuekinds kind;
};
}  // namespace

static valuekinds kindof(int code) {
    static const coderange ranges[] = {
        {9, valuekinds::text},     {59, valuekinds::real},   {79, valuekinds::int16},
        {99, valuekinds::int32},   {109, valuekinds::text},  {149, valuekinds::real},
        {169, valuekinds::int64},  {179, valuekinds::int16}, {239, valuekinds::real},
        {269, valuekinds::text},   {289, valuekinds::int16}, {299, valuekinds::int8},
        {309, valuekinds::text},   {319, valuekinds::bytes}, {369, valuekinds::text},
        {389, valuekinds::int16},  {399, valuekinds::text},  {409, valuekinds::int16},
        {419, valuekinds::text},   {429, valuekinds::int32}, {439, valuekinds::text},
        {459, valuekinds::int32},  {469, valuekinds::real},  {1003, valuekinds::text},
        {1004, valuekinds::bytes}, {1009, valuekinds::text}, {1059, valuekinds::real},
        {1070, valuekinds::int16}, {1071, valuekinds::int32}};
    for (const coderange& range : ranges)
        if (code <= range.last) return range.kind;
    return valuekinds::text;
}

bool dxftags::nextbinary(dxftag& tag) {
    if (in.rest().empty()) return false;
    const std::uint64_t longcode = 255;  // in one byte: the code follows in two
    std::uint64_t code = takewhole(widecodes ? 2 : 1);
    if (!widecodes && code == longcode) code = takewhole(2);
    tag = {};
    tag.code = int(code);
    const valuekinds kind = kindof(tag.code);
    tag.isnumber = kind != valuekinds::text && kind != valuekinds::bytes;
    switch (kind) {
        case valuekinds::text:
            tag.text = takestring();
            break;
        case valuekinds::bytes:
            tag.text = take(std::size_t(takewhole(1)));
            break;
        case valuekinds::real:
            tag.number = std::bit_cast<double>(takewhole(8));
            break;
        case valuekinds::int8:
            tag.number = double(takewhole(1));
            break;
        case valuekinds::int16:
            tag.number = std::int16_t(takewhole(2));
            break;
        case valuekinds::int32:
            tag.number = std::int32_t(takewhole(4));
            break;
        case valuekinds::int64:
            tag.number = double(std::int64_t(takewhole(8)));
            break;
    }
    return true;
}
