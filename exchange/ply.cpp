// SPDX-License-Identifier: GPL-3.0-or-later
// Polygon files in their ASCII form.
#include "exchange/ply.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "exchange/textlines.h"

namespace {

struct property {
    std::string name;
    bool islist = false, isreal = false;
};
struct plyelement {
    std::string name;
    long count = 0;
    std::vector<property> properties;
    // The place of a property, -1 for none.
    int find(std::string_view property) const {
        for (std::size_t i = 0; i < properties.size(); ++i)
            if (sameword(properties[i].name, property)) return int(i);
        return -1;
    }
};
struct plyheader {
    std::vector<plyelement> elements;
    bool isascii = false;
};

bool isrealtype(const textlines& in, std::string_view type) {
    static const std::map<std::string, bool, std::less<>> types = {
        {"CHAR", false},  {"UCHAR", false},  {"SHORT", false},  {"USHORT", false},
        {"INT", false},   {"UINT", false},   {"INT8", false},   {"UINT8", false},
        {"INT16", false}, {"UINT16", false}, {"INT32", false},  {"UINT32", false},
        {"FLOAT", true},  {"DOUBLE", true},  {"FLOAT32", true}, {"FLOAT64", true}};
    const auto at = types.find(uppercase(type));
    if (at == types.end()) in.fail("unknown type of a property, " + shown(type));
    return at->second;
}

void readelement(const textlines& in, std::string_view line, plyheader& header) {
    std::string_view name, word;
    plyelement element;
    if (!nextword(line, name) || !nextword(line, word) || !readwholenumber(word, element.count) ||
        element.count < 0)
        in.fail("the count of an element is not a whole number");
    element.name = uppercase(name);
    header.elements.push_back(element);
}

void readproperty(const textlines& in, std::string_view line, plyheader& header) {
    if (header.elements.empty()) in.fail("a property stands before any element");
    property p;
    std::string_view type, name;
    nextword(line, type);
    if (sameword(type, "list")) {
        p.islist = true;
        nextword(line, type);
        isrealtype(in, type);
        nextword(line, type);
    }
    p.isreal = isrealtype(in, type);
    if (!nextword(line, name)) in.fail("a property has no name");
    p.name = std::string(name);
    header.elements.back().properties.push_back(p);
}

void readformat(const textlines& in, std::string_view line, plyheader& header) {
    std::string_view form;
    nextword(line, form);
    header.isascii = sameword(form, "ascii");
    if (form.size() >= 6 && sameword(form.substr(0, 6), "binary"))
        in.fail("binary PLY is not supported; save as ASCII");
    if (!header.isascii) in.fail("unknown format " + shown(form));
}

plyheader readheader(textlines& in) {
    plyheader header;
    std::string_view line, word;
    if (!in.next(line) || !sameword(line, "ply"))
        in.failat(1, "this is no polygon file: \"ply\" was expected");
    while (in.next(line)) {
        if (line == "end_header" || line == "END_HEADER") {
            if (!header.isascii) in.fail("the header has no format");
            return header;
        }
        if (!nextword(line, word) || sameword(word, "comment") || sameword(word, "obj_info"))
            continue;
        if (sameword(word, "format"))
            readformat(in, line, header);
        else if (sameword(word, "element"))
            readelement(in, line, header);
        else if (sameword(word, "property"))
            readproperty(in, line, header);
        else
            in.fail("unknown word of the header, " + shown(word));
    }
    in.fail("the header does not end: \"end_header\" was expected");
}

// --- data ---------------------------------------------------------------------------------------

const long progressitems = 16384;  // between two looks at the clock

class plyreader {
  public:
    plyreader(textlines& lines, imported& into) : words(lines), found(into), name(lines.name()) {}

    void read(const plyheader& header) {
        long vertexlists = 0;
        for (const plyelement& element : header.elements) vertexlists += element.name == "VERTEX";
        if (vertexlists != 1)
            words.fail(vertexlists == 0 ? "the header tells of no vertices"
                                        : "the header has several lists of vertices");
        // Faces may come before the vertices: their corners are checked at the end.
        for (const plyelement& element : header.elements) readall(element);
        build();
    }

  private:
    struct polygon {                      // of a face before the vertices are known
        std::size_t first = 0, size = 0;  // corners in `corners`
        long number = 0;
    };

    void readall(const plyelement& element) {
        // No item is shorter than a digit and its blank.
        if (element.properties.empty()) return;
        what = element.name;
        total = element.count;
        for (item = 1; item <= element.count; ++item) {
            if (item % progressitems == 0) readingprogress(name, words.share());
            if (words.atend()) failshort();
            if (element.name == "VERTEX")
                readvertex(element);
            else if (element.name == "FACE")
                readface(element);
            else if (element.name == "EDGE")
                readedge(element);
            else
                for (const property& p : element.properties) skip(p);
        }
        const bool known = what == "VERTEX" || what == "FACE" || what == "EDGE";
        if (!known && element.count > 0)
            found.report.skipped("Items of the unknown element \"" + element.name + "\"", 0,
                                 element.count);
    }

    [[noreturn]] void failshort() {
        std::string plural = what == "VERTEX" ? "vertices" : what == "FACE" ? "faces" : "items";
        words.fail("the file ends: " + numbertext(item - 1) + " of " + numbertext(total) + " " +
                   plural + " were read");
    }

    // Numbers of a property; in the middle of an item the file may end too.
    double real(const char* meaning) {
        if (words.atend()) failshort();
        return words.real(meaning);
    }
    long whole(const char* meaning) {
        if (words.atend()) failshort();
        return words.whole(meaning);
    }
    void skip(const property& p) {
        const long count = p.islist ? listcount() : 1;
        for (long i = 0; i < count; ++i) real("a number");
    }
    long listcount() {
        const long most = 1000000;
        const long count = whole("the count of a list");
        if (count < 0 || count > most)
            words.fail("the count of a list is " + numbertext(count) + ", 0 to " +
                       numbertext(most) + " was expected");
        return count;
    }

    void readvertex(const plyelement& element) {
        if (item == 1) {
            axis = {element.find("x"), element.find("y"), element.find("z")};
            if (axis[0] < 0 || axis[1] < 0) words.fail("the vertices have no x or no y");
            if (axis[2] < 0) found.report.warn("The vertices have no z; 0 was taken");
            found.nodes.reserve(std::size_t(std::min(element.count, mostreserved)));
        }
        triple at{};
        for (int i = 0; i < int(element.properties.size()); ++i) {
            const property& p = element.properties[std::size_t(i)];
            const auto k = std::ranges::find(axis, i);
            if (k == axis.end() || p.islist)
                skip(p);
            else
                at[std::size_t(k - axis.begin())] = real("a coordinate");
        }
        found.addnode(at);
    }

    void readface(const plyelement& element) {
        if (item == 1) {
            list = std::max(element.find("vertex_indices"), element.find("vertex_index"));
            if (list < 0 || !element.properties[std::size_t(list)].islist)
                words.fail("the faces have no list \"vertex_indices\"");
            found.elements.reserve(std::size_t(std::min(element.count, mostreserved)));
        }
        polygon face{corners.size(), 0, item};
        for (int i = 0; i < int(element.properties.size()); ++i) {
            if (i != list) {
                skip(element.properties[std::size_t(i)]);
                continue;
            }
            face.size = std::size_t(listcount());
            for (std::size_t c = 0; c < face.size; ++c) corners.push_back(index());
        }
        if (found.nodes.empty()) return faces.push_back(face);
        buildface(face);
        corners.resize(face.first);
    }

    void readedge(const plyelement& element) {
        if (item == 1) {
            list = element.find("vertex1");
            second = element.find("vertex2");
            if (list < 0 || second < 0) words.fail("the edges have no vertex1 or no vertex2");
        }
        std::array<long, 2> ends{};
        for (int i = 0; i < int(element.properties.size()); ++i)
            if (i == list || i == second)
                ends[i == list ? 0 : 1] = index();
            else
                skip(element.properties[std::size_t(i)]);
        edges.push_back(ends);
    }

    // What the vertices have shown to be wrong is told at its line.
    long index() {
        const long i = whole("the index of a vertex");
        const auto count = long(found.nodes.size());
        if (count > 0 && (i < 0 || i >= count)) failindex(i, item);
        return i;
    }
    [[noreturn]] void failindex(long index, long number) {
        words.fail((what == "EDGE" ? "edge " : "face ") + numbertext(number) + " uses index " +
                   numbertext(index) + ", there are only " + numbertext(long(found.nodes.size())) +
                   " vertices (0-" + numbertext(long(found.nodes.size()) - 1) + ")");
    }

    void build() {
        const auto count = long(found.nodes.size());
        what = "FACE";
        for (const polygon& face : faces) {
            for (std::size_t c = 0; c < face.size; ++c)
                if (const long i = corners[face.first + c]; i < 0 || i >= count)
                    failindex(i, face.number);
            buildface(face);
        }
        what = "EDGE";
        for (std::size_t e = 0; e < edges.size(); ++e) {
            for (const long i : edges[e])
                if (i < 0 || i >= count) failindex(i, long(e) + 1);
            addline(edges[e]);
        }
        tellread(found);
    }
    void addline(const std::array<long, 2>& ends) {
        if (ends[0] == ends[1])
            found.report.skipped("Edges with both ends at one vertex");
        else
            found.addelement(typebeam, {int(ends[0]) + 1, int(ends[1]) + 1, 0, 0});
    }
    void buildface(const polygon& face) {
        if (face.size < 3) {
            found.report.warn("Faces with fewer than three corners were left out");
            return;
        }
        const auto corner = [&](std::size_t c) { return int(corners[face.first + c]) + 1; };
        if (face.size == 4) {
            found.addelement(typeshell4, {corner(0), corner(1), corner(2), corner(3)});
            return;
        }
        for (std::size_t c = 1; c + 1 < face.size; ++c) {
            const int e = found.addelement(typeshell3, {corner(0), corner(c), corner(c + 1), 0});
            if (face.size == 3) continue;
            if (c == 1) found.report.warn("Faces with more than four corners became triangles");
            found.report.about(reportitems::elements, e);
        }
    }

    static constexpr long mostreserved = 1 << 24;  // a count in the header is only a claim
    wordstream words;
    imported& found;
    std::string name, what;
    long item = 0, total = 0;
    std::array<int, 3> axis{};
    int list = -1, second = -1;
    std::vector<long> corners;
    std::vector<polygon> faces;
    std::vector<std::array<long, 2>> edges;
};

}  // namespace

void readply(const std::string& path, imported& found) {
    textlines in(path);
    const plyheader header = readheader(in);
    plyreader(in, found).read(header);
}
