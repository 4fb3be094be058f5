// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/kalsections.h"

#include <algorithm>

#include "core/runtime.h"
#include "core/textfile.h"

const std::string kalheadstart = "\"section\",\"", kalendrow = "\"end\"\n";

std::size_t linesbeforekal(const std::string& text, std::size_t at) {
    return std::size_t(std::count(text.begin(), text.begin() + long(at), '\n'));
}

[[noreturn]] static void fail(const std::string& text, std::size_t at, const std::string& name,
                              const std::string& what) {
    const std::size_t line = linesbeforekal(text, at) + 1;
    throw runtimeerror{errtype, name + ", line " + std::to_string(line) + ": " + what};
}

std::string readkaltext(const std::string& name) {
    std::string text = toutf8(readwhole(name));
    std::erase(text, '\r');
    if (!text.empty() && text.back() != '\n') text += '\n';
    if (text.find('\0') != text.npos) fail(text, text.find('\0'), name, "a byte 0 is no text");
    return text;
}

std::optional<kalsectionplace> nextkalsection(const std::string& text, std::size_t at,
                                              const std::string& name) {
    at = text.find_first_not_of("\n ", at);
    if (at == text.npos) return {};
    kalsectionplace s{"", at, 0, 0, 0};
    const std::size_t start = kalheadstart.size(), line = text.find('\n', at);
    if (text.compare(at, start, kalheadstart) != 0 || line == text.npos || line < at + start + 1 ||
        text[line - 1] != '"')
        fail(text, at, name, R"(a row "section","keyword" is expected)");
    s.keyword = text.substr(at + start, line - 1 - at - start);
    s.rows = line + 1;
    const std::size_t end = text.find("\n" + kalendrow, line);
    if (end == text.npos)
        fail(text, at, name, "the section \"" + s.keyword + "\" has no end; the file is cut short");
    s.end = end + 1;
    s.next = s.end + kalendrow.size();
    return s;
}
