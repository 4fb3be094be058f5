// SPDX-License-Identifier: GPL-3.0-or-later
// Elements of SVG: Scalable Vector Graphics 1.1, w3.org/TR/SVG11. Coordinates are hundredths of a
// centimetre.
#include "view/svgsurface.h"

#include <cmath>
#include <utility>
#include <vector>

#include "core/numtext.h"
#include "view/clip.h"
#include "view/pen.h"

symbolfile (*symbolpng)(std::string_view name);

static const double unitspercm = 100;
static const double penwidth = 0.018;            // centimetres of one step of drawwidth
static const double pointradius = 0.015;         // centimetres of a single point
static const double cmperpoint = 2.54 / 72;      // of letters
static const double ascent = 0.78, wide = 0.55;  // of the height of a line, of a letter's height

svgsurface::svgsurface(const std::string& path, double width, double height, surface* measure)
    : out(path), letters(measure), framewidth(width), frameheight(height) {
    out.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    out.raw(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\" width=\"");
    out.raw(fixedtext(width, 3)).raw("cm\" height=\"").raw(fixedtext(height, 3));
    out.raw("cm\" viewBox=\"0 0 ");
    number(width).out.raw(" ");
    number(height).out.raw("\">\n<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n<g>\n");
}

void svgsurface::commit() {
    endline();
    out.raw("</g>\n</svg>\n");
    out.commit();
}

svgsurface& svgsurface::number(double centimetres) {
    out.raw(numbertext(std::round(centimetres * unitspercm * 10) / 10 + 0.0));
    return *this;
}

svgsurface& svgsurface::attribute(const char* name, double centimetres) {
    out.raw(" ").raw(name).raw("=\"");
    number(centimetres).out.raw("\"");
    return *this;
}

svgsurface& svgsurface::colourof(const char* name, colour c) {
    static const char* const digits = "0123456789abcdef";
    char text[] = "=\"#000000\"";
    const int parts[] = {redof(c), greenof(c), blueof(c)};
    for (int k = 0; k < 3; ++k) {
        text[3 + 2 * k] = digits[parts[k] / 16];
        text[4 + 2 * k] = digits[parts[k] % 16];
    }
    out.raw(" ").raw(name).raw(text);
    return *this;
}

colour svgsurface::ink(colour c) const {
    return aspaper ? paperink(c) : c;
}

void svgsurface::strokeof(const strokekind& s) {
    colourof("stroke", ink(s.c)).attribute("stroke-width", s.width * penwidth);
    if (s.style == pens::dotted)
        out.raw(" stroke-dasharray=\"3 5\"");
    else
        out.raw(" stroke-linecap=\"round\" stroke-linejoin=\"round\"");
}

void svgsurface::filling() {
    if (fillsolid)
        colourof("fill", fillcolor);
    else
        out.raw(" fill=\"none\"");
}

void svgsurface::endline() {
    if (std::exchange(strokes, 0) > 0) out.raw("\"/>\n");
}

void svgsurface::toframe(double left, double top, double width, double height) {
    endline();
    const std::string name = "frame" + numbertext(++frames);
    out.raw("</g>\n<clipPath id=\"").raw(name).raw("\"><rect x=\"-2\" y=\"-2\"");
    attribute("width", width + 0.04).attribute("height", height + 0.04);
    out.raw("/></clipPath>\n<g clip-path=\"url(#").raw(name).raw(")\" transform=\"translate(");
    number(left).out.raw(" ");
    number(top).out.raw(")\">\n");
    framewidth = width;
    frameheight = height;
}

void svgsurface::clear(colour background) {
    endline();
    drawwidth = 1;
    drawstyle = pens::solid;
    fillsolid = false;
    out.raw("<rect");
    attribute("width", framewidth).attribute("height", frameheight).colourof("fill", background);
    out.raw("/>\n");
}

void svgsurface::point(double x, double y, colour c) {
    moveto(x, y);
    if (!isplain({x * unitspercm, y * unitspercm})) return;
    endline();
    out.raw("<circle");
    attribute("cx", x).attribute("cy", y).attribute("r", pointradius).colourof("fill", ink(c));
    out.raw("/>\n");
}

void svgsurface::line(double x1, double y1, double x2, double y2, colour c) {
    moveto(x2, y2);
    point2 a{x1 * unitspercm, y1 * unitspercm}, b{x2 * unitspercm, y2 * unitspercm};
    if ((!isplain(a) || !isplain(b)) && !clipline(a, b)) return;
    const double w = framewidth * unitspercm, h = frameheight * unitspercm;
    if ((a.x < 0 && b.x < 0) || (a.y < 0 && b.y < 0) || (a.x > w && b.x > w) ||
        (a.y > h && b.y > h))
        return;
    const int longestpath = 2000;  // strokes; some programs are slow with more
    const strokekind kind{c, drawwidth, drawstyle};
    if (!(kind == now) || strokes >= longestpath) endline();
    if (strokes == 0) {
        now = kind;
        out.raw("<path fill=\"none\"");
        strokeof(kind);
        out.raw(" d=\"");
    }
    if (strokes++ == 0 || a.x != end.x || a.y != end.y) {
        out.raw("M");
        number(a.x / unitspercm).out.raw(" ");
        number(a.y / unitspercm);
    }
    out.raw("L");
    number(b.x / unitspercm).out.raw(" ");
    number(b.y / unitspercm);
    end = b;
}

void svgsurface::box(double x1, double y1, double x2, double y2, colour c) {
    const point2 corners[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    polygon(corners, 4, c);
}

void svgsurface::circle(double x, double y, double radius, colour c) {
    if (!isplain({x * unitspercm, y * unitspercm}) || !isplain(radius * unitspercm)) return;
    endline();
    out.raw("<circle");
    attribute("cx", x).attribute("cy", y).attribute("r", radius);
    if (fillsolid && fillcolor == c)
        colourof("fill", ink(c));
    else
        filling();
    strokeof({c, drawwidth, drawstyle});
    out.raw("/>\n");
}

void svgsurface::polygon(const point2* p, int n, colour edge) {
    std::vector<point2> corners(p, p + n);
    bool plain = true;
    for (point2& q : corners) {
        q = {q.x * unitspercm, q.y * unitspercm};
        plain = plain && isplain(q);
    }
    if (!plain) corners = clippolygon(corners.data(), n);
    if (corners.size() < 3) return;
    endline();
    out.raw("<polygon");
    filling();
    // A filling with an outline of its own colour meets its neighbour without a seam.
    if (fillsolid && edge == fillcolor)
        colourof("stroke", edge).attribute("stroke-width", penwidth / 2);
    else
        strokeof({edge, drawwidth, drawstyle});
    out.raw(" points=\"");
    for (const point2& q : corners) {
        number(q.x / unitspercm).out.raw(" ");
        number(q.y / unitspercm).out.raw(" ");
    }
    out.raw("\"/>\n");
}

static std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < ' ') continue;  // XML knows no others
        result += c == '&'   ? "&amp;"
                  : c == '<' ? "&lt;"
                  : c == '>' ? "&gt;"
                  : c == '"' ? "&quot;"
                             : std::string(1, c);
    }
    return result;
}

void svgsurface::text(std::string_view utf8) {
    if (utf8.empty() || !isplain({currentx * unitspercm, currenty * unitspercm})) return;
    endline();
    out.raw("<text xml:space=\"preserve\"");
    attribute("x", currentx).attribute("y", currenty + ascent * textheight());
    attribute("font-size", font.size * cmperpoint).colourof("fill", ink(textcolor));
    const bool isnamed = font.name != labelfont().name && !font.name.empty();
    out.raw(" font-family=\"").raw(isnamed ? escaped(font.name) + ", sans-serif" : "sans-serif");
    out.raw("\"");
    if (font.bold) out.raw(" font-weight=\"bold\"");
    if (font.italic) out.raw(" font-style=\"italic\"");
    if (font.underline) out.raw(" text-decoration=\"underline\"");
    out.raw(">").raw(escaped(utf8)).raw("</text>\n");
}

// RFC 4648, section 4.
static std::string base64(std::string_view bytes) {
    static const char* const letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group =
                group * 256 + (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k > bytes.size() ? '=' : letters[group >> (18 - 6 * k) & 63];
    }
    return text;
}

void svgsurface::picture(std::string_view name, double x, double y) {
    const symbolfile symbol = symbolpng ? symbolpng(name) : symbolfile();
    if (symbol.png.empty() || !isplain({x * unitspercm, y * unitspercm})) return;
    endline();
    out.raw("<image");
    attribute("x", x - symbol.width / 2).attribute("y", y - symbol.height / 2);
    attribute("width", symbol.width).attribute("height", symbol.height);
    out.raw(" xlink:href=\"data:image/png;base64,").raw(base64(symbol.png)).raw("\"/>\n");
}

double svgsurface::textwidth(std::string_view utf8) {
    if (!letters) return wide * font.size * cmperpoint * double(utf8.size());
    const labelfont before = std::exchange(letters->font, font);
    const double result = letters->textwidth(utf8);
    letters->font = before;
    return result;
}

double svgsurface::textheight() {
    const double lineheight = 1.17;  // of the letters' size, in most fonts
    if (!letters) return lineheight * font.size * cmperpoint;
    const labelfont before = std::exchange(letters->font, font);
    const double result = letters->textheight();
    letters->font = before;
    return result;
}
