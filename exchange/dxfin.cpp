// SPDX-License-Identifier: GPL-3.0-or-later
// Objects, header, tables and blocks of a drawing.
#include "exchange/dxfin.h"

#include <algorithm>
#include <cmath>

#include "core/colours.h"
#include "core/textfile.h"

bool dxffile::nextobject() {
    dxftag tag;
    while (!haspending) {  // what stands before the first object
        if (!in.next(pending)) return false;
        haspending = pending.code == 0;
    }
    objectname = trimmed(pending.text);
    objectline = pending.line;
    haspending = false;
    tags.clear();
    bool ingroup = false;
    while (in.next(tag)) {
        if (tag.code == 0) {
            pending = tag;
            haspending = true;
            break;
        }
        const int extended = 1000, group = 102;
        if (tag.code == group) ingroup = tag.text.starts_with('{');
        if (tag.code < extended && tag.code != group && !ingroup) tags.push_back(tag);
    }
    return true;
}

double dxffile::real(const dxfobject& object, int code, double otherwise) const {
    const dxftag* const tag = object.find(code);
    return tag ? in.real(*tag) : otherwise;
}

long dxffile::whole(const dxfobject& object, int code, long otherwise) const {
    const dxftag* const tag = object.find(code);
    return tag ? in.whole(*tag) : otherwise;
}

std::string_view dxffile::text(const dxfobject& object, int code) const {
    const dxftag* const tag = object.find(code);
    return tag ? trimmed(tag->text) : std::string_view();
}

triple dxffile::point(const dxfobject& object, int code, const triple& otherwise) const {
    triple at = otherwise;
    for (const dxftag& tag : object.tags)
        if (tag.code == code || tag.code == code + 10 || tag.code == code + 20)
            at[std::size_t(tag.code - code) / 10] = in.real(tag);
    return at;
}

// Characters that a code page lacks are written as \U+00FC.
std::string dxffile::decoded(std::string_view raw) const {
    std::string text = toutf8(raw);
    for (std::size_t at = text.find("\\U+"); at != text.npos; at = text.find("\\U+", at + 1)) {
        const std::size_t digits = 4;
        if (at + 3 + digits > text.size()) break;
        const std::string hex = text.substr(at + 3, digits);
        if (hex.find_first_not_of("0123456789abcdefABCDEF") != hex.npos) continue;
        const auto code = unsigned(std::stoul(hex, nullptr, 16));
        std::string letter;
        if (code < 0x80)
            letter = {char(code)};
        else if (code < 0x800)
            letter = {char(0xC0 | code >> 6), char(0x80 | (code & 0x3F))};
        else
            letter = {char(0xE0 | code >> 12), char(0x80 | (code >> 6 & 0x3F)),
                      char(0x80 | (code & 0x3F))};
        text.replace(at, 3 + digits, letter);
    }
    return text;
}

// Reads the objects of a section that is not the one of the entities.
void dxffile::readsection() {
    const std::string_view name = text(object(), 2);
    if (name == "HEADER") return readheader();
    if (name == "TABLES") return readtables();
    if (name == "BLOCKS") return readblocks();
    while (nextobject() && !isend()) {
    }
}

// The variables of the header follow SECTION as one object.
void dxffile::readheader() {
    std::string_view variable;
    for (const dxftag& tag : tags) {
        const int name = 9, page = 3, units = 70;
        if (tag.code == name) variable = trimmed(tag.text);
        if (tag.code == units && variable == "$INSUNITS") unit = in.whole(tag);
        if (tag.code == page && variable == "$DWGCODEPAGE") codepage = trimmed(tag.text);
    }
}

void dxffile::readtables() {
    while (nextobject() && !isend()) {
        if (objectname != "LAYER") continue;
        const dxfobject layer = object();
        const int name = 2, index = 62, truecolour = 420;
        int shade = colourofindex(std::labs(whole(layer, index, 7)));
        if (const dxftag* tag = layer.find(truecolour)) {
            const long c = in.whole(*tag);
            shade = rgb(int(c >> 16 & 255), int(c >> 8 & 255), int(c & 255));
        }
        layers[std::string(text(layer, name))] = shade;
    }
}

void dxffile::readblocks() {
    dxfblock* block = nullptr;
    while (nextobject() && !isend()) {
        const dxfobject part = object();
        if (objectname == "BLOCK") {
            block = &blocks[std::string(text(part, 2))];
            const int external = 4 | 8;
            *block = {point(part, 10), {}, false, (whole(part, 70) & external) != 0};
        } else if (objectname == "ENDBLK") {
            block = nullptr;
        } else if (block != nullptr) {
            block->tags.push_back({0, objectname, 0, false, objectline});
            block->tags.insert(block->tags.end(), tags.begin(), tags.end());
        }
    }
}

// The hues run round in steps of 15 degrees, each in five shades, pure and half washed out.
int colourofindex(long index) {
    static const colour first[] = {rgb(255, 0, 0),   rgb(255, 255, 0), rgb(0, 255, 0),
                                   rgb(0, 255, 255), rgb(0, 0, 255),   rgb(255, 0, 255),
                                   rgb(0, 0, 0),     rgb(65, 65, 65),  rgb(128, 128, 128)};
    static const int greys[] = {51, 91, 132, 173, 214, 255};
    if (index < 1 || index > 255) return -1;
    if (index <= 9) return first[index - 1];
    if (index >= 250) return rgb(greys[index - 250], greys[index - 250], greys[index - 250]);
    static const double shades[] = {255, 165, 127, 76, 38};
    const double hue = double((index - 10) / 10) / 4;  // 0..6 round the circle
    const double shade = shades[(index % 10) / 2], washed = index % 2 == 1 ? 0.5 : 0;
    const auto part = [&](double shift) {
        const double away = std::fabs(std::remainder(hue - shift, 6.0));
        const double pure = std::clamp(2 - away, 0.0, 1.0);
        return int(shade * (washed + (1 - washed) * pure));
    };
    return rgb(part(0), part(2), part(4));
}
