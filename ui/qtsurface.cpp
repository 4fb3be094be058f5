// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing into the images of a view.
#include "ui/qtsurface.h"

#include <cmath>

#include "view/clip.h"

static const std::size_t linesatonce = 16384;
static const double stampmost = 12;  // device pixels of radius up to which discs are stamped

QColor qtcolor(colour c) {
    return {redof(c), greenof(c), blueof(c)};
}

QFont qtfont(const labelfont& font) {
    QFont f(QString::fromStdString(font.name));
    f.setPointSizeF(font.size > 0 ? font.size : 8);
    f.setBold(font.bold);
    f.setItalic(font.italic);
    f.setUnderline(font.underline);
    return f;
}

std::map<std::string, QPixmap, std::less<>>& symbolpictures() {
    static std::map<std::string, QPixmap, std::less<>> pictures;
    return pictures;
}

static QString qtext(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

qtsurface::~qtsurface() {
    close();
}

void qtsurface::resize(int width, int height, double newratio, double newpixels) {
    if (width == w && height == h && newratio == ratio && newpixels == pixels) return;
    close();
    w = width;
    h = height;
    ratio = newratio;
    pixels = newpixels;
    columns = std::max(1, int(std::lround(w * ratio)));
    rows = std::max(1, int(std::lround(h * ratio)));
    stamped.clear();
    passed.clear();
    for (QImage& i : layersofplanes) i = QImage();
    used.fill(false);
    clear(background);
}

QImage& qtsurface::image(planes p) {
    QImage& i = layersofplanes[std::size_t(p)];
    if (i.isNull()) {
        i = QImage(columns, rows,
                   p == planes::model ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
        i.setDevicePixelRatio(ratio);
        i.fill(p == planes::model ? qtcolor(background) : QColor(Qt::transparent));
    }
    return i;
}

QPainter& qtsurface::painter() {
    if (!brushwork) {
        used[std::size_t(plane)] = true;
        facetset = false;
        brushwork = std::make_unique<QPainter>(&image(plane));
        brushwork->setRenderHint(QPainter::Antialiasing, smooth);
    }
    return *brushwork;
}

void qtsurface::close() {
    endstrokes();
    brushwork.reset();
}

void qtsurface::clear(colour c) {
    lines.clear();
    ++strokeround;
    brushwork.reset();
    background = c;
    used.fill(false);
    used[0] = true;
    for (QImage& i : layersofplanes)
        if (!i.isNull()) i.fill(Qt::transparent);
    image(planes::model).fill(qtcolor(background));
    ++round;
    plane = planes::model;
    drawwidth = 1;
    drawstyle = pens::solid;
    fillsolid = false;
}

void qtsurface::toplane(planes p) {
    if (p == plane) return;
    close();
    plane = p;
    ++round;
}

void qtsurface::clearplane(planes p) {
    if (!used[std::size_t(p)]) return;
    close();
    image(p).fill(Qt::transparent);
    used[std::size_t(p)] = false;
}

// Smoothed marks cover the strokes that they lie on, with their edges; to erase covers both.
double qtsurface::penwidth(const stroke& s) const {
    if (!smooth) return s.width;
    if (erases(s.c)) return s.width + 3;
    return plane == planes::marks ? s.width + 1 : s.width;
}

QPen qtsurface::pen(const stroke& s) const {
    QPen p(qtcolor(s.c));
    p.setWidthF(penwidth(s));
    p.setCosmetic(!smooth && s.width == 1 && ratio == 1);
    p.setStyle(s.style == pens::dotted && !erases(s.c) ? Qt::DotLine : Qt::SolidLine);
    p.setCapStyle(s.width > 1 && !erases(s.c) ? Qt::FlatCap : Qt::SquareCap);
    return p;
}

QBrush qtsurface::brush() const {
    return fillsolid ? QBrush(qtcolor(fillcolor)) : QBrush(Qt::NoBrush);
}

// The plane of the model holds the background itself, the planes above it are clear where they are
// empty.
void qtsurface::setmode(QPainter& p, bool erase, bool smoothed) {
    facetset = false;
    p.setCompositionMode(erase && plane != planes::model ? QPainter::CompositionMode_Clear
                                                         : QPainter::CompositionMode_SourceOver);
    p.setRenderHint(QPainter::Antialiasing, smoothed && !erase);
}

void qtsurface::flush() {
    if (lines.empty()) return;
    QPainter& p = painter();
    setmode(p, erases(now.c), smooth);
    p.setPen(pen(now));
    p.drawLines(lines.data(), int(lines.size()));
    lines.clear();
}

void qtsurface::endstrokes() {
    flush();
    ++strokeround;
}

// A stroke along the raster covers whole pixels; between them it would be smeared over one more.
void qtsurface::align(point2& a, point2& b) const {
    const double straight = 0.02;  // device pixels off the raster's direction
    const double width = penwidth(now) * ratio, middle = std::fmod(std::round(width), 2) / 2;
    const auto onraster = [&](double& from, double& to) {
        if (std::fabs(to - from) * ratio > straight) return;
        from = to = (std::floor(from * ratio - middle + 0.5) + middle) / ratio;
    };
    if (!smooth) return;
    onraster(a.x, b.x);
    onraster(a.y, b.y);
}

// A mesh as fine as the pixels has most of its strokes where others lie already.
bool qtsurface::iscovered(const point2& a, const point2& b) {
    const int reach = 6;  // device pixels
    if (smooth || drawstyle != pens::solid) return false;
    const double x = a.x * ratio, y = a.y * ratio, dx = b.x * ratio - x, dy = b.y * ratio - y;
    const int steps = int(std::max(std::fabs(dx), std::fabs(dy))) + 1;
    const auto isinside = [&](double i, double j) {
        return i >= 0 && i < columns && j >= 0 && j < rows;
    };
    if (steps > reach || !isinside(x, y) || !isinside(x + dx, y + dy)) return false;
    if (passed.empty()) passed.assign(std::size_t(columns) * std::size_t(rows), 0);
    bool covered = true;
    for (int i = 0; i <= steps; ++i) {
        const double part = double(i) / steps;
        const int column = int(x + part * dx), row = int(y + part * dy);
        unsigned& there = passed[std::size_t(row) * std::size_t(columns) + std::size_t(column)];
        covered = covered && there == strokeround;
        there = strokeround;
    }
    return covered;
}

void qtsurface::line(double x1, double y1, double x2, double y2, colour c) {
    const stroke s{c, drawwidth, drawstyle};
    if (!(s == now)) {
        endstrokes();
        now = s;
    } else if (lines.size() >= linesatonce) {
        flush();
    }
    moveto(x2, y2);
    point2 a{x1 * pixels, y1 * pixels}, b{x2 * pixels, y2 * pixels};
    if ((!isplain(a) || !isplain(b)) && !clipline(a, b)) return;
    if (iscovered(a, b)) return;
    align(a, b);
    lines.emplace_back(a.x, a.y, b.x, b.y);
}

void qtsurface::point(double x, double y, colour c) {
    moveto(x, y);
    if (!isplain({x * pixels, y * pixels})) return;
    endstrokes();
    QPainter& p = painter();
    setmode(p, erases(c), false);
    p.setPen(QPen(qtcolor(c), erases(c) ? 3 : 1));
    p.drawPoint(QPointF(x * pixels, y * pixels));
}

void qtsurface::box(double x1, double y1, double x2, double y2, colour c) {
    if (!isplain({x1 * pixels, y1 * pixels}) || !isplain({x2 * pixels, y2 * pixels})) return;
    endstrokes();
    QPainter& p = painter();
    setmode(p, erases(c), false);
    p.setPen(pen({c, drawwidth, drawstyle}));
    p.setBrush(brush());
    p.drawRect(
        QRectF(QPointF(x1 * pixels, y1 * pixels), QPointF(x2 * pixels, y2 * pixels)).normalized());
}

// Nodes come by the hundred thousand: each is a copy of one small disc, and a place that holds one
// is not drawn again. A disc that erases covers the pixel by which a drawn one may lie off its
// place.
void qtsurface::stamp(double x, double y, double radius, colour c, bool erase) {
    const stroke key{c, 1, pens::solid};
    if (!(key == stampkey) || radius != stampradius || erase != stamperases ||
        stampimage.devicePixelRatio() != ratio || stampimage.isNull()) {
        stampkey = key;
        stampradius = radius;
        stamperases = erase;
        const double reach = erase ? radius * ratio + 2 : radius * ratio;
        const int side = int(std::ceil(reach * 2)) + 3;
        stampimage = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
        stampimage.fill(Qt::transparent);
        QPainter p(&stampimage);
        p.setRenderHint(QPainter::Antialiasing, !erase);
        p.setPen(Qt::NoPen);
        p.setBrush(qtcolor(c));
        p.drawEllipse(QPointF(side / 2.0, side / 2.0), reach, reach);
        p.end();
        stampimage.setDevicePixelRatio(ratio);
        ++round;
    }
    const double px = x * ratio, py = y * ratio;
    if (!(px > -50 && px < columns + 50 && py > -50 && py < rows + 50)) return;
    if (stamped.empty()) stamped.assign(std::size_t(columns) * std::size_t(rows), 0);
    const int column = int(std::floor(px)), row = int(std::floor(py));
    if (column >= 0 && column < columns && row >= 0 && row < rows) {
        unsigned& there = stamped[std::size_t(row) * std::size_t(columns) + std::size_t(column)];
        if (there == round) return;
        there = round;
    }
    const double half = stampimage.width() / 2.0 / ratio;
    QPainter& p = painter();
    setmode(p, false, smooth);
    if (erase && plane != planes::model)
        p.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    p.drawImage(QPointF(x - half, y - half), stampimage);
}

void qtsurface::circle(double x, double y, double radius, colour c) {
    if (!isplain({x * pixels, y * pixels}) || !isplain(radius * pixels)) return;
    endstrokes();
    const bool erase = erases(c);
    const double r = radius * pixels;
    if (fillsolid && fillcolor == c && r * ratio <= stampmost)
        return stamp(x * pixels, y * pixels, r, c, erase);
    QPainter& p = painter();
    setmode(p, erase, smooth);
    if (erase) {
        p.setPen(QPen(qtcolor(background), 4));
        p.setBrush(qtcolor(background));
        ++round;
    } else {
        p.setPen(pen({c, drawwidth, drawstyle}));
        p.setBrush(brush());
    }
    p.drawEllipse(QPointF(x * pixels, y * pixels), r, r);
}

// Facets come by the hundred thousand, many alike: pen and brush stay until another is asked for.
void qtsurface::usefacet(QPainter& p, const stroke& edge) {
    const bool same = facetset && edge == facetedge && fillsolid == facetfilled &&
                      (!fillsolid || fillcolor == facetfill) && smooth == facetsmooth &&
                      erasing == faceterasing;
    if (same) return;
    setmode(p, erases(edge.c), smooth && !fillsolid);
    p.setPen(pen(edge));
    p.setBrush(brush());
    facetedge = edge;
    facetfilled = fillsolid;
    facetfill = fillcolor;
    facetsmooth = smooth;
    faceterasing = erasing;
    facetset = true;
}

void qtsurface::polygon(const point2* points, int n, colour edge) {
    endstrokes();
    ++round;
    QPainter& p = painter();
    usefacet(p, {edge, drawwidth, drawstyle});
    corners.clear();
    bool plain = true;
    for (int i = 0; i < n; ++i) {
        corners.push_back({points[i].x * pixels, points[i].y * pixels});
        plain = plain && isplain(corners.back());
    }
    if (!plain) corners = clippolygon(corners.data(), n);
    polygonpoints.clear();
    for (const point2& c : corners) polygonpoints.emplace_back(c.x, c.y);
    if (polygonpoints.size() > 2)
        p.drawConvexPolygon(polygonpoints.data(), int(polygonpoints.size()));
}

// Wholly beside the image, whatever the letters: known without a look at the font.
bool qtsurface::isoutside(std::string_view utf8) const {
    const double letter = 4 * std::max(font.size, 8.0);  // pixels, more than any is wide or high
    const double x = currentx * pixels, y = currenty * pixels;
    return x > w || y > h || y < -letter || x < -letter * double(utf8.size());
}

static bool issame(const labelfont& a, const labelfont& b) {
    return a.name == b.name && a.bold == b.bold && a.italic == b.italic && a.size == b.size &&
           a.underline == b.underline;
}

void qtsurface::usefont() {
    if (textfont && issame(fontkey, font)) return;
    fontkey = font;
    textfont = std::make_unique<QFont>(qtfont(font));
    metrics = std::make_unique<QFontMetricsF>(*textfont);
}

void qtsurface::text(std::string_view utf8) {
    if (!isplain({currentx * pixels, currenty * pixels}) || isoutside(utf8)) return;
    endstrokes();
    QPainter& p = painter();
    usefont();
    const QPointF at(currentx * pixels, currenty * pixels);
    if (erases(textcolor)) {
        setmode(p, true, false);
        p.fillRect(
            QRectF(at, QSizeF(metrics->horizontalAdvance(qtext(utf8)) + 2, metrics->height()))
                .adjusted(-1, -1, 1, 1),
            qtcolor(background));
        return;
    }
    setmode(p, false, smooth);
    p.setFont(*textfont);
    p.setPen(qtcolor(textcolor));
    p.drawText(QPointF(at.x(), at.y() + metrics->ascent()), qtext(utf8));
}

void qtsurface::picture(std::string_view name, double x, double y) {
    const auto found = symbolpictures().find(name);
    if (found == symbolpictures().end() || found->second.isNull()) return;
    if (!isplain({x * pixels, y * pixels})) return;
    endstrokes();
    QPainter& p = painter();
    setmode(p, false, smooth);
    const QSizeF size = found->second.deviceIndependentSize();
    p.drawPixmap(QPointF(x * pixels - size.width() / 2, y * pixels - size.height() / 2),
                 found->second);
}

double qtsurface::textwidth(std::string_view utf8) {
    usefont();
    return pixels > 0 ? metrics->horizontalAdvance(qtext(utf8)) / pixels : 0;
}

double qtsurface::textheight() {
    usefont();
    return pixels > 0 ? metrics->height() / pixels : 0;
}

void qtsurface::show() {
    close();
    if (onshow) onshow();
}

void qtsurface::paint(QPainter& p) {
    close();
    for (std::size_t i = 0; i < layersofplanes.size(); ++i)
        if (used[i] && !layersofplanes[i].isNull()) p.drawImage(QPointF(0, 0), layersofplanes[i]);
}

QImage qtsurface::picture() {
    QImage all = image(planes::model).copy();
    QPainter p(&all);
    paint(p);
    return all;
}
