// SPDX-License-Identifier: GPL-3.0-or-later
// Entities of a drawing as pieces, faces and points.
#include "exchange/dxf.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "core/catalogue.h"
#include "core/numtext.h"
#include "core/session.h"
#include "core/views.h"
#include "exchange/curves.h"
#include "exchange/drawn.h"
#include "exchange/dxfin.h"
#include "exchange/placement.h"

int typewithcorners(int type, int corners) {
    if (nodesoftype(float(type)) == corners) return type;
    std::string name = eltypname(type);
    if (name.empty() || (name.back() != '3' && name.back() != '4')) return 0;
    name.back() = char('0' + corners);
    const int other = findtype(name);
    return other > 0 && nodesoftype(float(other)) == corners ? other : 0;
}

namespace {

const long mostinserts = 100000;   // of all blocks, nested ones too
const long mostitems = 20000000;   // pieces and faces
const std::size_t mostdepth = 64;  // of blocks in blocks

// Flags of POLYLINE and VERTEX, code 70.
enum polyflags {
    polyclosed = 1,
    polysplined = 4,
    poly3d = 8,
    polymesh = 16,
    polynclosed = 32,
    polyface = 64
};
enum vertexflags { vertexframe = 16, vertexface = 128 };
enum polycodes { codelayer = 8, codeflags = 70, codebulge = 42, codenormal = 210 };

// What an entity stands in.
struct surroundings {
    placement place;
    std::string_view layer;  // of what lies on layer "0" of a block; empty outside blocks
    std::size_t depth = 0;
};

struct vertex {
    triple at{};
    double bulge = 0;
    long flags = 0;
    std::array<long, 4> face{};
};
// A POLYLINE and the vertices that follow it.
struct polyline {
    bool isopen = false, isflat = false;
    long flags = 0, m = 0, n = 0, surface = 0;
    double elevation = 0;
    triple normal{0, 0, 1};
    int group = 0;
    std::vector<vertex> vertices;
};

class dxfreader {
  public:
    dxfreader(const std::string& path, const dxfoptions& choices, double factor, imported& into)
        : file(path), options(choices), found(into) {
        outermost.place = scaled({factor, factor, factor});
        how.longest = options.longest;
        std::string_view rest = options.without, name;
        while (nextfield(rest, name, ';'))
            if (!name.empty()) without.emplace_back(name);
    }
    void read() {
        polyline chain;
        file.read([&](const dxfobject& object) {
            const long look = 4096;
            if (++seen % look == 0) readingprogress(file.filename, file.in.share());
            entity(object, outermost, chain);
        });
        tellcodepage();
        const double extent = extentof(drawing), part = 1e-6, least = 1e-12;
        const double asked = options.joinwithin >= 0 ? options.joinwithin : extent * part;
        const double within = std::max(asked, extent * least);
        const long cut = options.split ? splitpieces(drawing, within, file.filename) : 0;
        const drawnelements made = buildmodel(drawing, within, options.longest, found);
        if (cut > 0) {
            found.report.changed("Lines split where others meet them", cut);
            about(made.cut);
        }
        const double merged = automergenodes ? std::max(within, mergetol) : within, slip = 2e-4;
        tellgaps(found, {merged, within, options.split}, extent * slip);
        tell(made);
    }

  private:
    void about(const std::vector<int>& elements) {
        for (const int e : elements) found.report.about(reportitems::elements, e);
    }

    // --- entities ---

    void entity(const dxfobject& object, const surroundings& in, polyline& chain) {
        const std::string_view name = object.name;
        if (name == "VERTEX") return readvertex(object, chain);
        if (name == "SEQEND") return endpolyline(chain, in);
        const int paper = 67, invisible = 60;
        if (file.whole(object, paper) == 1) return skip("Entities of the paper space", object);
        if (file.whole(object, invisible) == 1) return skip("Invisible entities", object);
        if (!without.empty() && isleftout(object, in)) return;
        if (name == "3DFACE") return face(object, in);
        tellwidth(object);
        if (name == "LINE") return line(object, in);
        if (name == "ARC" || name == "CIRCLE") return circle(object, in, name == "ARC");
        if (name == "LWPOLYLINE") return lightpolyline(object, in);
        if (name == "POLYLINE") return beginpolyline(object, in, chain);
        if (name == "SPLINE") return splinecurve(object, in);
        if (name == "ELLIPSE") return ellipse(object, in);
        if (name == "SOLID" || name == "TRACE") return solid(object, in);
        if (name == "POINT") return point(object, in);
        if (name == "INSERT") return insert(object, in);
        skip(file.decoded(name), object);
    }

    // Lines have neither width nor height in the model.
    void tellwidth(const dxfobject& object) {
        const bool ischain = object.name == "LWPOLYLINE" || object.name == "POLYLINE";
        for (const dxftag& tag : object.tags) {
            const bool isheight = tag.code == 39;
            const bool iswidth = ischain && (tag.code == 40 || tag.code == 41 || tag.code == 43);
            if ((isheight || iswidth) && file.in.real(tag) != 0)
                return skip(isheight ? "Heights (thickness) of lines" : "Widths of polylines",
                            object);
        }
    }
    void skip(const std::string& what, const dxfobject& object) {
        found.report.skipped(what, object.line);
    }
    // False, with a line in the report, for an entity that is not wanted.
    bool iswanted(int type, const char* kind, const dxfobject& object) {
        if (type != typenone) return true;
        skip(std::string(kind) + ", not chosen in the dialog", object);
        return false;
    }

    std::string_view layerof(const dxfobject& object, const surroundings& in) const {
        std::string_view layer = file.text(object, codelayer);
        if (layer.empty()) layer = "0";
        return layer == "0" && !in.layer.empty() ? in.layer : layer;
    }
    // On a layer that was named to be left out; a star at the end of a name stands for any rest.
    bool isleftout(const dxfobject& object, const surroundings& in) {
        const std::string layer = file.decoded(layerof(object, in));
        const bool isout = std::ranges::any_of(without, [&](const std::string& name) {
            const std::size_t star = name.find('*');
            return star == name.npos ? sameword(layer, name)
                                     : sameword(layer.substr(0, star), name.substr(0, star));
        });
        if (isout) skip("Entities on layer " + layer + ", left out as chosen", object);
        return isout;
    }

    int groupof(const dxfobject& object, const surroundings& in) {
        const std::string_view layer = layerof(object, in);
        if (lastgroup != 0 && layer == lastlayer) return lastgroup;
        lastlayer = layer;
        const auto known = found.groups.size();
        lastgroup = found.groupof(file.decoded(layer));
        if (found.groups.size() > known)
            if (const auto at = file.layers.find(lastlayer); at != file.layers.end())
                found.group(lastgroup).colour = at->second;
        return lastgroup;
    }
    void note(const char* kind, int group) {
        auto& row = counts[kind];
        if (row.size() <= std::size_t(group)) row.resize(std::size_t(group) + 1);
        ++row[std::size_t(group)];
    }
    void tell(const drawnelements& made) {
        for (const auto& [kind, row] : counts)
            for (std::size_t g = 1; g < row.size(); ++g)
                if (row[g] > 0)
                    found.report.read(std::string(kind) + " on layer " + found.groups[g - 1].name,
                                      row[g]);
        found.report.read("Nodes", long(found.nodes.size()));
        found.report.read("Elements", long(found.elements.size()));
        if (how.deviation > 0) {
            found.report.changed("Curves became straight pieces, at most " +
                                     roughly(how.deviation) + " beside the curve",
                                 curves);
            about(made.curved);
        }
    }
    void tellcodepage() {
        const std::string page = uppercase(file.codepage);
        if (!page.empty() && page != "ANSI_1252" && page != "UTF-8" && page != "ASCII")
            found.report.warn("The code page " + file.codepage +
                              " is read as UTF-8 or ANSI_1252; names may look different");
    }

    // --- pieces ---

    placement flat(const dxfobject& object, const surroundings& in) const {
        return in.place * extruded(file.point(object, codenormal, {0, 0, 1}));
    }
    // What goes beyond a Single is nothing that a grid could sort.
    void check(const triple& at) const {
        const double most = std::numeric_limits<float>::max();
        for (const double v : at)
            if (!(std::fabs(v) <= most))
                throw runtimeerror{
                    errargument, file.filename + ": the drawing reaches farther than a model can"};
    }
    void addpiece(const triple& a, const triple& b, int type, int group, bool iscurved) {
        checkcount();
        check(a);
        check(b);
        drawing.pieces.push_back({a, b, type, group, iscurved, false});
    }
    void checkcount() const {
        if (long(drawing.pieces.size() + drawing.faces.size()) >= mostitems)
            throw runtimeerror{errargument, file.filename + ": the drawing comes to more than " +
                                                numbertext(mostitems) + " pieces and faces"};
    }
    void addchain(const chain& points, const placement& place, int type, int group, bool iscurved) {
        for (std::size_t i = 1; i < points.size(); ++i)
            addpiece(place(points[i - 1]), place(points[i]), type, group, iscurved);
    }
    void addface(const std::array<triple, 4>& corners, int count, const placement& place,
                 int group) {
        checkcount();
        drawnface f;
        f.count = count;
        f.type = typewithcorners(options.faces, 4);
        f.triangle = typewithcorners(options.faces, 3);
        f.group = group;
        for (int c = 0; c < count; ++c) {
            const int from = place.ismirrored() ? count - 1 - c : c;
            f.corners[std::size_t(c)] = place(corners[std::size_t(from)]);
            check(f.corners[std::size_t(c)]);
        }
        drawing.faces.push_back(f);
    }
    void addgraphic(int kind, const std::array<triple, 3>& points) {
        importedgraphic g;
        g.kind = kind;
        g.rows[0] = {float(kind), 1, 1, 0};
        for (std::size_t j = 0; j < (kind == kindline ? 2u : 3u); ++j)
            for (std::size_t k = 0; k < 3; ++k) g.rows[j + 1][k + 1] = float(points[j][k]);
        found.graphics.push_back(g);
    }

    void line(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.lines, "LINE", object)) return;
        const int group = groupof(object, in);
        const triple a = in.place(file.point(object, 10)), b = in.place(file.point(object, 11));
        note("LINE", group);
        if (options.asgraphics)
            addgraphic(kindline, {a, b, {}});
        else
            addpiece(a, b, options.lines, group, false);
    }

    void circle(const dxfobject& object, const surroundings& in, bool isarc) {
        const int type = isarc ? options.arcs : options.circles;
        if (!iswanted(type, isarc ? "ARC" : "CIRCLE", object)) return;
        const int group = groupof(object, in), codefrom = 50, codeto = 51, coderadius = 40;
        const triple centre = file.point(object, 10);
        const double radius = file.real(object, coderadius);
        const double from = isarc ? toradians(file.real(object, codefrom)) : 0;
        double sweep = isarc ? toradians(file.real(object, codeto)) - from : 2 * pi;
        if (isarc) sweep = std::remainder(sweep - pi, 2 * pi) + pi;  // 0..2 pi
        if (!(sweep > 0)) sweep = 2 * pi;
        if (!(radius > 0) || !std::isfinite(from))
            return skip("Arcs and circles without radius", object);
        note(isarc ? "ARC" : "CIRCLE", group);
        const placement place = flat(object, in);
        if (options.asgraphics) return circlegraphics(centre, radius, from, sweep, place);
        addcurve([&] { return arcpoints(centre, radius, from, sweep, how); }, place, type, group);
    }
    void circlegraphics(const triple& centre, double radius, double from, double sweep,
                        const placement& place) {
        const auto at = [&](double part) {
            const double angle = from + sweep * part;
            return place({centre[0] + radius * std::cos(angle),
                          centre[1] + radius * std::sin(angle), centre[2]});
        };
        const int sections = sweep > pi * 1.01 ? 2 : 1;
        for (int i = 0; i < sections; ++i) {
            const double a = double(i) / sections, b = double(i + 1) / sections;
            addgraphic(kindcircle, {at(a), at(b), at((a + b) / 2)});
        }
    }
    template <typename Points>
    void addcurve(Points points, const placement& place, int type, int group) {
        ++curves;
        how.scale = place.scale();
        addchain(points(), place, type, group, true);
    }

    void ellipse(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.arcs, "ELLIPSE", object)) return;
        const int group = groupof(object, in), coderatio = 40, codefrom = 41, codeto = 42;
        const double from = file.real(object, codefrom), to = file.real(object, codeto, 2 * pi);
        const double most = 1e4;  // radians: more is damage
        if (!(std::fabs(from) < most && std::fabs(to) < most))
            return skip("Ellipses with senseless angles", object);
        note("ELLIPSE", group);
        addcurve(
            [&] {
                return ellipsepoints(file.point(object, 10), file.point(object, 11, {1, 0, 0}),
                                     file.real(object, coderatio, 1),
                                     file.point(object, codenormal, {0, 0, 1}), from, to, how);
            },
            in.place, options.arcs, group);
    }

    void splinecurve(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.arcs, "SPLINE", object)) return;
        spline s;
        s.degree = int(std::clamp(file.whole(object, 71, 3), 0L, 100L));
        s.closed = file.whole(object, codeflags) & 1;
        for (const dxftag& tag : object.tags) {
            if (tag.code == 40) s.knots.push_back(file.in.real(tag));
            if (tag.code == 41) s.weights.push_back(file.in.real(tag));
            gather(s.control, tag, 10);
            gather(s.fit, tag, 11);
        }
        s.starts = file.point(object, 12);
        s.ends = file.point(object, 13);
        const int group = groupof(object, in);
        const std::size_t before = drawing.pieces.size();
        addcurve([&] { return splinepoints(s, how); }, in.place, options.arcs, group);
        if (drawing.pieces.size() == before)
            return skip("Splines whose knots and points make no curve", object);
        note("SPLINE", group);
        if (s.control.empty())
            found.report.warn(
                "Splines of fit points alone became the smoothest curves through them",
                object.line);
    }
    void gather(std::vector<triple>& points, const dxftag& tag, int code) const {
        if (tag.code == code)
            points.push_back({file.in.real(tag), 0, 0});
        else if ((tag.code == code + 10 || tag.code == code + 20) && !points.empty())
            points.back()[std::size_t(tag.code - code) / 10] = file.in.real(tag);
    }

    void point(const dxfobject& object, const surroundings& in) {
        note("POINT", groupof(object, in));
        drawing.points.push_back(in.place(file.point(object, 10)));
        check(drawing.points.back());
    }

    // --- faces ---

    void face(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.faces, "3DFACE", object)) return;
        std::array<triple, 4> corners{};
        bool hasfourth = false;
        for (const dxftag& tag : object.tags) {
            const int c = tag.code % 10, axis = tag.code / 10 - 1;
            if (tag.code < 10 || tag.code > 39 || c > 3) continue;
            corners[std::size_t(c)][std::size_t(axis)] = file.in.real(tag);
            hasfourth = hasfourth || c == 3;
        }
        const int group = groupof(object, in);
        note("3DFACE", group);
        const bool istriangle = !hasfourth || corners[3] == corners[2];
        addface(corners, istriangle ? 3 : 4, in.place, group);
    }

    // The third and the fourth corner stand in the other order.
    void solid(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.faces, "SOLID", object)) return;
        const triple third = file.point(object, 12);
        const int group = groupof(object, in);
        const std::array<triple, 4> corners = {file.point(object, 10), file.point(object, 11),
                                               file.point(object, 13, third), third};
        note("SOLID", group);
        addface(corners, corners[2] == corners[3] ? 3 : 4, flat(object, in), group);
    }

    // --- polylines ---

    void addvertices(const polyline& p, const placement& place) {
        chain points;
        if (p.vertices.empty()) return;
        const std::size_t count = p.vertices.size();
        const std::size_t ends = count + (p.flags & polyclosed ? 1 : 0);
        bool iscurved = false;
        how.scale = place.scale();
        for (std::size_t i = 0; i < ends; ++i) {
            const triple& at = p.vertices[i % count].at;
            const double bulge = i == 0 || !p.isflat ? 0 : p.vertices[i - 1].bulge;
            iscurved = iscurved || bulge != 0;
            if (points.empty())
                points.push_back(at);
            else
                addbulge(points, at, bulge, how);
        }
        curves += iscurved;
        addchain(points, place, options.lines, p.group, iscurved);
    }

    void lightpolyline(const dxfobject& object, const surroundings& in) {
        if (!iswanted(options.lines, "LWPOLYLINE", object)) return;
        polyline p;
        const int codeelevation = 38;
        p.flags = file.whole(object, codeflags);
        p.isflat = true;
        p.group = groupof(object, in);
        const double z = file.real(object, codeelevation);
        for (const dxftag& tag : object.tags) {
            if (tag.code == 10) p.vertices.push_back({{file.in.real(tag), 0, z}, 0, 0, {}});
            if (p.vertices.empty()) continue;
            if (tag.code == 20) p.vertices.back().at[1] = file.in.real(tag);
            if (tag.code == codebulge) p.vertices.back().bulge = file.in.real(tag);
        }
        note("LWPOLYLINE", p.group);
        addvertices(p, flat(object, in));
    }

    void beginpolyline(const dxfobject& object, const surroundings& in, polyline& p) {
        endpolyline(p, in);
        p = {};
        p.isopen = true;
        p.flags = file.whole(object, codeflags);
        p.isflat = !(p.flags & (poly3d | polymesh | polyface));
        const bool isface = p.flags & (polymesh | polyface);
        if (!iswanted(isface ? options.faces : options.lines,
                      isface ? "POLYLINE meshes" : "POLYLINE", object)) {
            p.isopen = false;
            return;
        }
        p.m = file.whole(object, 71);
        p.n = file.whole(object, 72);
        p.surface = file.whole(object, 75);
        if (p.surface != 0) {
            p.m = file.whole(object, 73);
            p.n = file.whole(object, 74);
        }
        p.elevation = file.point(object, 10)[2];
        p.normal = file.point(object, codenormal, {0, 0, 1});
        p.group = groupof(object, in);
    }
    void readvertex(const dxfobject& object, polyline& p) {
        if (!p.isopen) return;
        vertex v;
        v.at = file.point(object, 10);
        v.flags = file.whole(object, codeflags);
        v.bulge = file.real(object, codebulge);
        for (int c = 0; c < 4; ++c) v.face[std::size_t(c)] = file.whole(object, 71 + c);
        // The frame of a fitted curve or surface is not on it.
        const bool isfitted = (p.flags & polysplined) || p.surface != 0;
        if (isfitted && (v.flags & vertexframe)) return;
        if (p.isflat) v.at[2] = p.elevation;
        p.vertices.push_back(v);
    }
    void endpolyline(polyline& p, const surroundings& in) {
        if (!p.isopen) return;
        p.isopen = false;
        if (p.flags & polyface) {
            polyfaces(p, in);
        } else if (p.flags & polymesh) {
            polygonmesh(p, in);
        } else {
            note("POLYLINE", p.group);
            addvertices(p, p.isflat ? in.place * extruded(p.normal) : in.place);
        }
    }
    // Vertices first, then the faces by their numbers; the counts of the header are often wrong.
    void polyfaces(const polyline& p, const surroundings& in) {
        std::vector<triple> points;
        const auto isface = [](const vertex& v) {
            return (v.flags & vertexface) && !(v.flags & 64);
        };
        for (const vertex& v : p.vertices)
            if (!isface(v)) points.push_back(v.at);
        for (const vertex& v : p.vertices) {
            if (!isface(v)) continue;
            std::array<triple, 4> corners{};
            int count = 0;
            for (const long n : v.face) {
                if (n == 0) break;
                const auto i = std::size_t(std::labs(n));
                if (i > points.size())
                    throw runtimeerror{errtype, file.filename +
                                                    ": a face of a polyface mesh uses "
                                                    "vertex " +
                                                    numbertext(long(i)) + " of " +
                                                    numbertext(long(points.size()))};
                corners[std::size_t(count++)] = points[i - 1];
            }
            note("POLYLINE faces", p.group);
            if (count >= 3)
                addface(corners, count, in.place, p.group);
            else
                found.report.skipped("Faces of a polyface mesh with fewer than three corners");
        }
    }
    void polygonmesh(const polyline& p, const surroundings& in) {
        const long m = p.m, n = p.n, most = 32767;
        if (m < 2 || n < 2 || m > most || n > most || m * n > long(p.vertices.size())) {
            found.report.error("A polygon mesh of " + numbertext(m) + " by " + numbertext(n) +
                               " has " + numbertext(long(p.vertices.size())) + " vertices");
            return;
        }
        const auto at = [&](long i, long j) {
            return p.vertices[std::size_t((i % m) * n + j % n)].at;
        };
        const long rows = m - (p.flags & polyclosed ? 0 : 1);
        const long columns = n - (p.flags & polynclosed ? 0 : 1);
        for (long i = 0; i < rows; ++i)
            for (long j = 0; j < columns; ++j) {
                note("POLYLINE faces", p.group);
                addface({at(i, j), at(i + 1, j), at(i + 1, j + 1), at(i, j + 1)}, 4, in.place,
                        p.group);
            }
    }

    // --- blocks ---

    void insert(const dxfobject& object, const surroundings& in) {
        const std::string_view name = file.text(object, 2);
        const auto found_ = file.blocks.find(name);
        if (found_ == file.blocks.end()) {
            found.report.warn("Block " + file.decoded(name) + " is not in the drawing",
                              object.line);
            return;
        }
        dxfblock& block = found_->second;
        if (block.iselsewhere) return skip("Blocks that lie in another drawing (xref)", object);
        if (block.isopen || in.depth >= mostdepth) {
            found.report.error(
                "Block " + file.decoded(name) +
                    (block.isopen ? " is inserted in itself" : " is nested too deep"),
                object.line);
            return;
        }
        surroundings inner;
        inner.depth = in.depth + 1;
        inner.layer = layerof(object, in);
        const long columns = std::max(1L, file.whole(object, 70, 1));
        const long rows = std::max(1L, file.whole(object, 71, 1));
        const placement stand = flat(object, in) * moved(file.point(object, 10)) *
                                turned(toradians(file.real(object, 50)));
        const placement shape =
            scaled({file.real(object, 41, 1), file.real(object, 42, 1), file.real(object, 43, 1)}) *
            moved({-block.base[0], -block.base[1], -block.base[2]});
        const double across = file.real(object, 44), up = file.real(object, 45);
        block.isopen = true;
        for (long r = 0; r < rows; ++r)
            for (long c = 0; c < columns; ++c) {
                if (++inserts > mostinserts)
                    throw runtimeerror{errargument, file.filename +
                                                        ": the drawing inserts blocks more than " +
                                                        numbertext(mostinserts) + " times"};
                inner.place = stand * moved({double(c) * across, double(r) * up, 0}) * shape;
                polyline chain;
                file.each(block, [&](const dxfobject& o) { entity(o, inner, chain); });
                endpolyline(chain, inner);
            }
        block.isopen = false;
        note("INSERT", groupof(object, in));
    }

    dxffile file;
    dxfoptions options;
    std::vector<std::string> without;
    imported& found;
    drawn drawing;
    fineness how;
    surroundings outermost;
    long seen = 0, inserts = 0, curves = 0;
    int lastgroup = 0;
    std::string lastlayer;
    std::map<std::string_view, std::vector<long>> counts;  // of each kind by group
};

}  // namespace

void readdxf(const std::string& path, const dxfoptions& options, double factor, imported& found) {
    dxfreader(path, options, factor, found).read();
}

// --- units --------------------------------------------------------------------------------------

namespace {
struct lengthunit {
    long code;
    double metres;
    const char* name;
};
}  // namespace

static const lengthunit units[] = {{1, 0.0254, "inches"},     {2, 0.3048, "feet"},
                                   {3, 1609.344, "miles"},    {4, 0.001, "millimetres"},
                                   {5, 0.01, "centimetres"},  {6, 1, "metres"},
                                   {7, 1000, "kilometres"},   {10, 0.9144, "yards"},
                                   {13, 1e-6, "micrometres"}, {14, 0.1, "decimetres"}};

const char* nameofunit(double metres) {
    for (const lengthunit& u : units)
        if (std::fabs(u.metres - metres) <= 1e-9 * metres) return u.name;
    return "";
}

double unitofdrawing(const std::string& path) {
    double metres = 0;
    guarded(
        [&] {
            dxftags in(path);
            dxftag tag;
            const int variable = 9, value = 70;
            const std::string_view headers = "ENDSEC";
            bool isnext = false;
            while (in.next(tag) && tag.text != headers) {
                if (isnext && tag.code == value)
                    for (const lengthunit& u : units)
                        if (u.code == in.whole(tag)) metres = u.metres;
                isnext = tag.code == variable && trimmed(tag.text) == "$INSUNITS";
            }
        },
        [](const runtimeerror&) {});  // the reader tells what is wrong
    return metres;
}
