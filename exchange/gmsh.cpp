// SPDX-License-Identifier: GPL-3.0-or-later
// Reading of meshes.
#include "exchange/gmsh.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <optional>
#include <set>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "core/textfile.h"
#include "exchange/textlines.h"

namespace {

struct meshkind {
    int code, dimension, nodes, corners;  // corners: that are kept, 0 for a kind that is left out
    const char* name;
};
const meshkind meshkinds[] = {
    {1, 1, 2, 2, "lines"},
    {2, 2, 3, 3, "triangles"},
    {3, 2, 4, 4, "quadrilaterals"},
    {8, 1, 3, 2, "second-order lines"},
    {9, 2, 6, 3, "second-order triangles"},
    {10, 2, 9, 4, "second-order quadrilaterals"},
    {16, 2, 8, 4, "second-order quadrilaterals"},
    {15, 0, 1, 0, "points"},
    {4, 3, 4, 0, "tetrahedra"},
    {5, 3, 8, 0, "hexahedra"},
    {6, 3, 6, 0, "prisms"},
    {7, 3, 5, 0, "pyramids"},
    {11, 3, 10, 0, "tetrahedra"},
    {12, 3, 27, 0, "hexahedra"},
    {13, 3, 18, 0, "prisms"},
    {14, 3, 14, 0, "pyramids"},
    {17, 3, 20, 0, "hexahedra"},
    {18, 3, 15, 0, "prisms"},
    {19, 3, 13, 0, "pyramids"},
    {20, 2, 9, 3, "high-order triangles"},
    {21, 2, 10, 3, "high-order triangles"},
    {26, 1, 4, 2, "high-order lines"},
    {29, 3, 20, 0, "tetrahedra"},
    {22, 2, 12, 3, "high-order triangles"},
    {23, 2, 15, 3, "high-order triangles"},
    {24, 2, 15, 3, "high-order triangles"},
    {25, 2, 21, 3, "high-order triangles"},
    {27, 1, 5, 2, "high-order lines"},
    {28, 1, 6, 2, "high-order lines"},
    {30, 3, 35, 0, "tetrahedra"},
    {31, 3, 56, 0, "tetrahedra"},
    {36, 2, 16, 4, "high-order quadrilaterals"},
    {37, 2, 25, 4, "high-order quadrilaterals"},
    {38, 2, 36, 4, "high-order quadrilaterals"},
    {39, 2, 12, 4, "high-order quadrilaterals"},
    {40, 2, 16, 4, "high-order quadrilaterals"},
    {41, 2, 20, 4, "high-order quadrilaterals"},
    {92, 3, 64, 0, "hexahedra"},
    {93, 3, 125, 0, "hexahedra"},
};

const meshkind* kindof(long code) {
    const auto at = std::ranges::find(meshkinds, code, &meshkind::code);
    return at == std::end(meshkinds) ? nullptr : at;
}

// Out of line: inlined into the readers, gcc 12 takes the texts for overruns (its bug 105329).
[[noreturn, gnu::noinline]] void failend(const textlines& in, const char* what) {
    in.fail(std::string("the file ends where ") + what + " was expected");
}
[[gnu::noinline]] std::string toomany(const char* what, long count) {
    return std::string(what) + " is " + numbertext(count) + ", more than the file holds";
}

// Numbers of a section, as words or as bytes.
class numbersource {
  public:
    explicit numbersource(textlines& lines) : in(lines) {}
    bool binary = false, swapped = false;

    void begin() {
        if (!binary) words.emplace(in);
    }
    void end() {
        if (words) words->giveback();
        words.reset();
    }
    long whole(const char* what, std::size_t bytes) {
        if (words) return words->whole(what);
        if (bytes == sizeof(int)) return take<int>(what);
        return take<long>(what);
    }
    double real(const char* what) {
        const double number = words ? words->real(what) : take<double>(what);
        if (!std::isfinite(number))
            fail(std::string(what) + " was expected, found " + numbertext(number));
        return number;
    }
    // A count of items that each take room in the file: no more than that holds.
    long count(const char* what, std::size_t bytes) {
        const long n = whole(what, bytes);
        if (n < 0 || std::size_t(n) > in.rest().size()) fail(toomany(what, n));
        return n;
    }
    [[noreturn]] void fail(const std::string& what) const {
        if (words) words->fail(what);
        in.fail(what);
    }
    double share() const { return words ? words->share() : in.share(); }

  private:
    template <typename T>
    T take(const char* what) {
        T value{};
        if (in.rest().size() < sizeof value) failend(in, what);
        std::array<char, sizeof value> bytes{};
        std::memcpy(bytes.data(), in.rest().data(), sizeof value);
        if (swapped) std::ranges::reverse(bytes);
        std::memcpy(&value, bytes.data(), sizeof value);
        in.pass(sizeof value);
        return value;
    }
    textlines& in;
    std::optional<wordstream> words;
};

class gmshreader {
  public:
    gmshreader(textlines& lines, imported& into) : in(lines), from(lines), found(into) {}

    void read() {
        std::string_view line;
        while (in.next(line)) {
            if (line == "$MeshFormat")
                readformat();
            else if (line == "$PhysicalNames")
                readnames();
            else if (line == "$Entities")
                section(&gmshreader::readentities);
            else if (line == "$PartitionedEntities")
                section(&gmshreader::readparts);
            else if (line == "$NOD")
                in.fail("version 1 is not read; " + versionsread());
            else if (line == "$Nodes")
                section(isold ? &gmshreader::readoldnodes : &gmshreader::readnodes);
            else if (line == "$Elements")
                section(isold ? &gmshreader::readoldelements : &gmshreader::readelements);
            else if (line.starts_with('$') && !line.starts_with("$End"))
                skipsection(line);
        }
        if (!hasformat) in.failat(1, "this is no mesh: \"$MeshFormat\" was expected");
        build();
    }

  private:
    struct element {
        const meshkind* kind;
        std::array<int, 4> corners;
        long number;
        int group;
    };

    static std::string versionsread() { return "save the mesh as version 4.1 or 2.2"; }
    void readformat() {
        double version = 0, newversion = 4.1;
        long form = 0, size = 0;
        std::string_view line, word;
        in.next(line);
        const bool whole = nextword(line, word) && readreal(word, version) &&
                           nextword(line, word) && readwholenumber(word, form) &&
                           nextword(line, word) && readwholenumber(word, size);
        if (!whole) in.fail("version, form and size of a number were expected");
        isold = version >= 2 && version < 3;
        if (!isold && version != newversion)
            in.fail("version " + numbertext(version) + " is not read; " + versionsread());
        from.binary = form == 1;
        if (size != 8 && (isold || size != 4))
            in.fail("numbers of " + numbertext(size) + " bytes are not read");
        wide = std::size_t(size);
        hasformat = true;
        if (!from.binary) return;
        from.swapped = false;
        const long one = from.whole("the number 1", sizeof(int));
        from.swapped = one != 1;
    }
    void readnames() {
        std::string_view line, word;
        long count = 0, dimension = 0, tag = 0;
        if (!in.next(line) || !readwholenumber(line, count)) in.fail("a count was expected");
        for (long i = 0; i < count && in.next(line); ++i) {
            const bool numbers = nextword(line, word) && readwholenumber(word, dimension) &&
                                 nextword(line, word) && readwholenumber(word, tag);
            const std::size_t quote = line.find('"');
            if (!numbers || quote == line.npos)
                in.fail("dimension, tag and \"name\" were expected");
            line.remove_prefix(quote + 1);
            names[{dimension, tag}] = toutf8(line.substr(0, line.find('"')));
        }
    }
    void section(void (gmshreader::*body)()) {
        if (!hasformat) in.fail("the section $MeshFormat must stand before this one");
        from.begin();
        (this->*body)();
        from.end();
    }
    void skipsection(std::string_view name) {
        const std::string end = "\n$End" + std::string(name.substr(1));
        const std::size_t at = in.rest().find(end);
        found.report.skipped("Section " + std::string(name), in.number());
        if (at == std::string_view::npos) in.fail("the section " + shown(name) + " does not end");
        std::string_view passed = in.rest().substr(0, at + 1);
        const long lines = in.number() + std::ranges::count(passed, '\n');
        in.pass(at + 1);
        in.countlines(lines);
    }

    // --- version 4.1 ---

    // What of each entity was cut off stands as one more, behind the partitions and their ghosts.
    void readparts() {
        from.whole("a count of partitions", wide);
        for (long ghosts = from.count("a count of ghosts", wide); ghosts > 0; --ghosts)
            for (const char* const what : {"the tag of a ghost", "a partition"})
                from.whole(what, sizeof(int));
        inparts = true;
        readentities();
        inparts = false;
    }
    // Returns its dimension.
    long passparent() {
        const long dimension = from.whole("the dimension of the whole", sizeof(int));
        from.whole("the tag of the whole", sizeof(int));
        for (long n = from.count("a count of partitions", wide); n > 0; --n)
            from.whole("a partition", sizeof(int));
        return dimension;
    }
    // The first physical group of an entity counts; the edges between parts have none of their own.
    void readentities() {
        std::array<long, 4> counts{};
        for (long& c : counts) c = from.count("a count of entities", wide);
        for (long dimension = 0; dimension < 4; ++dimension)
            for (long i = 0; i < counts[std::size_t(dimension)]; ++i) {
                const long tag = from.whole("the tag of an entity", sizeof(int));
                const bool iscut = inparts && passparent() != dimension;
                for (int k = 0; k < (dimension == 0 ? 3 : 6); ++k) from.real("a coordinate");
                const long groups = from.count("a count of groups", wide);
                for (long g = 0; g < groups; ++g) {
                    const long physical = from.whole("the tag of a group", sizeof(int));
                    if (g == 0) physicals[{dimension, tag}] = iscut ? 0 : std::labs(physical);
                    if (g == 1)
                        found.report.warn(
                            "Entities in several physical groups; the first of them counts");
                }
                const long bounds = dimension == 0 ? 0 : from.count("a count of bounds", wide);
                for (long b = 0; b < bounds; ++b) from.whole("the tag of a bound", sizeof(int));
            }
    }
    void readnodes() {
        const long blocks = from.count("a count of blocks", wide);
        for (int i = 0; i < 3; ++i) from.whole("a count", wide);
        for (long b = 0; b < blocks; ++b) {
            const long dimension = from.whole("a dimension", sizeof(int));
            from.whole("the tag of an entity", sizeof(int));
            const long parameters =
                from.whole("0 or 1", sizeof(int)) != 0 ? std::clamp(dimension, 0L, 3L) : 0;
            const long count = from.count("a count of nodes", wide);
            std::vector<long> tags(std::size_t(count), 0);
            for (long& tag : tags) tag = from.whole("the tag of a node", wide);
            for (const long tag : tags) {
                addnode(tag);
                for (long k = 0; k < parameters; ++k) from.real("a parameter");
            }
        }
    }
    void readelements() {
        const long blocks = from.count("a count of blocks", wide);
        for (int i = 0; i < 3; ++i) from.whole("a count", wide);
        for (long b = 0; b < blocks; ++b) {
            const long dimension = from.whole("a dimension", sizeof(int));
            const long entity = from.whole("the tag of an entity", sizeof(int));
            const meshkind* const kind = kindof(from.whole("a kind of element", sizeof(int)));
            if (kind == nullptr) from.fail("the kind of these elements is not known");
            const long count = from.count("a count of elements", wide);
            const auto at = physicals.find({dimension, entity});
            const int group = groupof(dimension, at == physicals.end() ? 0 : at->second);
            for (long i = 0; i < count; ++i)
                addelement(kind, from.whole("the tag of an element", wide), group, wide);
        }
    }

    // --- version 2.2 ---

    void readoldnodes() {
        const long count = oldcount("a count of nodes");
        for (long i = 0; i < count; ++i) addnode(from.whole("the number of a node", sizeof(int)));
    }
    // Counts are words in a binary file too.
    long oldcount(const char* what) {
        if (!from.binary) return from.count(what, sizeof(int));
        std::string_view line;
        long count = 0;
        if (!in.next(line) || !readwholenumber(line, count) || count < 0)
            in.fail(std::string(what) + " was expected");
        return count;
    }
    void readoldelements() {
        const long total = oldcount("a count of elements");
        for (long done = 0; done < total;) {
            long number = 0, kindnumber = 0, tags = 0, block = 1;
            if (!from.binary) number = from.whole("the number of an element", sizeof(int));
            kindnumber = from.whole("a kind of element", sizeof(int));
            if (from.binary) block = from.count("a count of elements", sizeof(int));
            tags = from.count("a count of tags", sizeof(int));
            const meshkind* const kind = kindof(kindnumber);
            if (kind == nullptr)
                from.fail("the kind of element " + numbertext(kindnumber) + " is not known");
            if (block < 1) from.fail("a block without elements");
            for (long i = 0; i < block; ++i, ++done) {
                if (from.binary) number = from.whole("the number of an element", sizeof(int));
                long physical = 0, entity = 0;
                for (long t = 0; t < tags; ++t) {
                    const long tag = from.whole("a tag", sizeof(int));
                    if (t == 0) physical = tag;
                    if (t == 1) entity = tag;
                }
                const auto first = physicals.try_emplace({kind->dimension, entity}, physical).first;
                hasseveral = hasseveral || first->second != physical;
                addelement(kind, number, groupof(kind->dimension, physical), sizeof(int));
            }
        }
    }

    // --- both ---

    void progress() {
        const long look = 16384;  // items between two looks at the clock
        if (++seen % look == 0) readingprogress(in.name(), from.share());
    }
    void addnode(long number) {
        progress();
        triple at;
        for (double& v : at) v = from.real("a coordinate");
        if (table.find(number) != 0)
            found.report.warn("Nodes defined again; the later place holds");
        table.put(number, found.addnode(at));
        found.nodenumbers.push_back(number);
    }
    int groupof(long dimension, long physical) {
        if (physical == 0) return 0;
        const auto [at, isnew] = groups.try_emplace({dimension, physical}, 0);
        if (!isnew) return at->second;
        static const char* const kinds[] = {"point", "curve", "surface", "volume"};
        const auto name = names.find({dimension, physical});
        const bool isnamed = name != names.end() && !name->second.empty();
        at->second = found.groupof(isnamed ? name->second
                                           : std::string("Physical ") +
                                                 kinds[std::clamp(dimension, 0L, 3L)] + " " +
                                                 numbertext(physical));
        return at->second;
    }
    void addelement(const meshkind* kind, long number, int group, std::size_t bytes) {
        progress();
        element e{kind, {}, number, group};
        for (int c = 0; c < kind->nodes; ++c) {
            const long node = from.whole("the number of a node", bytes);
            if (c >= kind->corners) continue;
            const int n = table.find(node);
            if (n == 0)
                from.fail("element " + numbertext(number) + " uses node " + numbertext(node) +
                          ", which is not defined");
            e.corners[std::size_t(c)] = n;
        }
        if (kind->corners == 0)
            found.report.skipped(std::string("Elements that are ") + kind->name);
        else
            elements.push_back(e);
        haspoints = haspoints || kind->corners != kind->nodes;
        hassurfaces = hassurfaces || kind->dimension == 2;
    }
    static std::array<int, 4> sortedcorners(const element& e) {
        std::array<int, 4> corners = e.corners;
        std::ranges::sort(corners);
        return corners;
    }
    // Version 2 writes an element once for each physical group of its entity.
    // The edges of surfaces come along where a mesh is saved without groups; bars are meant where
    // there is nothing but lines, or in a group.
    void build() {
        static const int types[] = {0, 0, typebeam, typeshell3, typeshell4};
        std::set<std::array<int, 4>> known;
        for (const element& e : elements) {
            if (hasseveral && !known.insert(sortedcorners(e)).second) {
                found.report.changed("Elements of several physical groups stand in the first");
                continue;
            }
            if (e.kind->dimension == 1 && hassurfaces && e.group == 0) {
                found.report.skipped("Lines of no physical group, beside surfaces");
                haspoints = true;
                continue;
            }
            const int type = types[e.kind->corners];
            const int made = found.addelement(type, e.corners, e.group);
            found.elementnumbers.push_back(e.number);
            if (e.kind->nodes == e.kind->corners) continue;
            found.report.changed(std::string(e.kind->name) + " became straight ones");
            found.report.about(reportitems::elements, made);
        }
        if (haspoints) dropunused(found);
        tellread(found);
    }

    textlines& in;
    numbersource from;
    imported& found;
    bool isold = false, hasformat = false, hassurfaces = false, haspoints = false;
    bool hasseveral = false;  // an entity in two physical groups
    bool inparts = false;     // entities are those of partitions
    std::size_t wide = 8;     // bytes of counts and tags
    long seen = 0;
    numbertable table;
    std::map<std::pair<long, long>, std::string> names;
    std::map<std::pair<long, long>, long> physicals;  // by dimension and entity
    std::map<std::pair<long, long>, int> groups;      // by dimension and physical group
    std::vector<element> elements;
};

}  // namespace

void readgmsh(const std::string& path, imported& found) {
    textlines in(path);
    gmshreader(in, found).read();
}
