// SPDX-License-Identifier: GPL-3.0-or-later
// The sections of a drawing exchange file: units, layers, blocks, and its objects one by one.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "exchange/dxftags.h"
#include "exchange/imported.h"

// An entity: its name and what follows up to the next, without extended data.
struct dxfobject {
    std::string_view name;
    std::span<const dxftag> tags;
    long line = 0;

    const dxftag* find(int code) const {
        for (const dxftag& tag : tags)
            if (tag.code == code) return &tag;
        return nullptr;
    }
};

struct dxfblock {
    triple base{};
    std::vector<dxftag> tags;  // of its objects, each from its code 0 on
    bool isopen = false;       // it is being inserted
    bool iselsewhere = false;  // in a drawing of its own
};

class dxffile {
  public:
    explicit dxffile(const std::string& path) : in(path), filename(path) {}

    // Reads up to the entities, then calls take(object) for each of them, and ends at EOF.
    template <typename Take>
    void read(Take take);
    // Calls take(object) for each object of a block.
    template <typename Take>
    void each(const dxfblock& block, Take take) const;

    double real(const dxfobject& object, int code, double otherwise = 0) const;
    long whole(const dxfobject& object, int code, long otherwise = 0) const;
    std::string_view text(const dxfobject& object, int code) const;
    // Three coordinates: code, code + 10, code + 20.
    triple point(const dxfobject& object, int code, const triple& otherwise = {}) const;
    std::string decoded(std::string_view text) const;  // UTF-8

    dxftags in;
    std::string filename;
    long unit = 0;                      // $INSUNITS
    std::map<std::string, int> layers;  // colour 0xBBGGRR by name
    std::map<std::string, dxfblock, std::less<>> blocks;
    std::string codepage;

  private:
    bool nextobject();  // false at the end of the file
    dxfobject object() const { return {objectname, {tags.data(), tags.size()}, objectline}; }
    bool isend() const { return objectname == "ENDSEC" || objectname == "EOF"; }
    void readheader();
    void readtables();
    void readblocks();
    void readsection();
    dxftag pending;
    bool haspending = false;
    std::string_view objectname;
    long objectline = 0;
    std::vector<dxftag> tags;
};

int colourofindex(long index);  // of the 255 indexed colours; -1 for none

template <typename Take>
void dxffile::read(Take take) {
    while (nextobject()) {
        if (objectname == "EOF") return;
        if (objectname != "SECTION") continue;
        const dxfobject section = object();
        if (text(section, 2) != "ENTITIES") {
            readsection();
            continue;
        }
        while (nextobject() && !isend()) take(object());
    }
    in.failatend("the mark EOF is missing: the file is cut");
}

template <typename Take>
void dxffile::each(const dxfblock& block, Take take) const {
    for (std::size_t begin = 0; begin < block.tags.size();) {
        std::size_t end = begin + 1;
        while (end < block.tags.size() && block.tags[end].code != 0) ++end;
        take({block.tags[begin].text,
              {block.tags.data() + begin + 1, end - begin - 1},
              block.tags[begin].line});
        begin = end;
    }
}
