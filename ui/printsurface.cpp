// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing on a printed page.
#include "ui/printsurface.h"

#include <QFontMetricsF>
#include <algorithm>

#include "view/clip.h"
#include "view/pen.h"

static const double penwidth = 0.018;         // centimetres of one step of drawwidth
static const double pointwidth = 0.03;        // centimetres across of a single point
static const double screenpixel = 2.54 / 96;  // centimetres of a symbol picture's pixel

QColor printsurface::ink(colour c) const {
    return qtcolor(aspaper ? paperink(c) : c);
}

static QString qtext(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

void printsurface::begin(QPainter* p, const QRectF& area, double pixelspercm) {
    painter = p;
    paper = area;
    pixels = pixelspercm;
    painter->save();
    frame = QRectF();
    toframe(0, 0, paper.width() / pixels, paper.height() / pixels);
}

void printsurface::end() {
    enddense();
    if (painter) painter->restore();
    painter = nullptr;
}

void printsurface::toframe(double left, double top, double width, double height) {
    if (!painter) return;
    enddense();
    frame = QRectF(left * pixels, top * pixels, width * pixels, height * pixels);
    painter->restore();
    painter->save();
    painter->translate(paper.topLeft() + frame.topLeft());
    // The frame's own outline is not to be cut in half.
    const double edge = penwidth * pixels;
    painter->setClipRect(QRectF(QPointF(0, 0), frame.size()).adjusted(-edge, -edge, edge, edge));
    painter->setRenderHint(QPainter::Antialiasing, true);
}

void printsurface::clear(colour background) {
    drawwidth = 1;
    drawstyle = pens::solid;
    fillsolid = false;
    if (!aspaper && painter)
        painter->fillRect(QRectF(QPointF(0, 0), frame.size()), qtcolor(background));
    if (smooth || !painter) return;
    densepicture = std::make_unique<qtsurface>();
    densepicture->smooth = false;
    densepicture->resize(int(frame.width()), int(frame.height()), 1, pixels);
    densepicture->clear(background);
}

// A pixel of the picture is one of the printer's; letters are told for a screen's.
qtsurface* printsurface::densesurface() {
    if (!densepicture) return nullptr;
    surface& to = *densepicture;
    to.moveto(currentx, currenty);
    to.drawwidth = drawwidth;
    to.drawstyle = drawstyle;
    to.fillsolid = fillsolid;
    to.fillcolor = fillcolor;
    to.textcolor = textcolor;
    to.font = font;
    to.font.size = font.size * pixels * screenpixel;
    return densepicture.get();
}

void printsurface::enddense() {
    if (!densepicture) return;
    const std::unique_ptr<qtsurface> done = std::move(densepicture);
    painter->setRenderHint(QPainter::LosslessImageRendering, true);
    painter->drawImage(QPointF(0, 0), done->picture());
    for (const symbol& s : symbols) picture(s.name, s.x, s.y);
    symbols.clear();
}

QPen printsurface::pen(colour c, double widths) const {
    QPen p(ink(c), widths * penwidth * pixels);
    p.setStyle(drawstyle == pens::dotted ? Qt::DotLine : Qt::SolidLine);
    p.setCapStyle(drawstyle == pens::dotted ? Qt::FlatCap : Qt::RoundCap);
    p.setJoinStyle(Qt::RoundJoin);
    return p;
}

QBrush printsurface::brush() const {
    return fillsolid ? QBrush(qtcolor(fillcolor)) : QBrush(Qt::NoBrush);
}

void printsurface::line(double x1, double y1, double x2, double y2, colour c) {
    moveto(x2, y2);
    if (qtsurface* const to = densesurface()) return to->line(x1, y1, x2, y2, c);
    point2 a{x1 * pixels, y1 * pixels}, b{x2 * pixels, y2 * pixels};
    if (!painter || ((!isplain(a) || !isplain(b)) && !clipline(a, b))) return;
    painter->setPen(pen(c, drawwidth));
    painter->drawLine(QLineF(a.x, a.y, b.x, b.y));
}

void printsurface::point(double x, double y, colour c) {
    moveto(x, y);
    if (qtsurface* const to = densesurface()) return to->point(x, y, c);
    if (!painter || !isplain({x * pixels, y * pixels})) return;
    painter->setPen(Qt::NoPen);
    painter->setBrush(ink(c));
    painter->drawEllipse(place(x, y), pointwidth / 2 * pixels, pointwidth / 2 * pixels);
}

void printsurface::box(double x1, double y1, double x2, double y2, colour c) {
    if (qtsurface* const to = densesurface()) return to->box(x1, y1, x2, y2, c);
    if (!painter || !isplain({x1 * pixels, y1 * pixels}) || !isplain({x2 * pixels, y2 * pixels}))
        return;
    painter->setPen(pen(c, drawwidth));
    painter->setBrush(brush());
    painter->drawRect(QRectF(place(x1, y1), place(x2, y2)).normalized());
}

void printsurface::circle(double x, double y, double radius, colour c) {
    if (qtsurface* const to = densesurface()) return to->circle(x, y, radius, c);
    if (!painter || !isplain({x * pixels, y * pixels}) || !isplain(radius * pixels)) return;
    painter->setPen(pen(c, drawwidth));
    painter->setBrush(fillsolid && fillcolor == c ? QBrush(ink(c)) : brush());
    painter->drawEllipse(place(x, y), radius * pixels, radius * pixels);
}

void printsurface::polygon(const point2* points, int n, colour edge) {
    if (qtsurface* const to = densesurface()) return to->polygon(points, n, edge);
    if (!painter) return;
    std::vector<point2> list(points, points + n);
    bool plain = true;
    for (point2& p : list) {
        p = {p.x * pixels, p.y * pixels};
        plain = plain && isplain(p);
    }
    if (!plain) list = clippolygon(list.data(), n);
    if (list.size() < 3) return;
    corners.clear();
    for (const point2& p : list) corners.emplace_back(p.x, p.y);
    // A filling with an outline of its own colour meets its neighbour without a seam.
    const bool seam = fillsolid && edge == fillcolor;
    painter->setPen(seam ? QPen(qtcolor(edge), penwidth / 2 * pixels) : pen(edge, drawwidth));
    painter->setBrush(brush());
    painter->drawConvexPolygon(corners.data(), int(corners.size()));
}

QFontMetricsF printsurface::metrics() const {
    return painter ? QFontMetricsF(qtfont(font), painter->device()) : QFontMetricsF(qtfont(font));
}

void printsurface::text(std::string_view utf8) {
    if (qtsurface* const to = densesurface()) return to->text(utf8);
    if (!painter || !isplain({currentx * pixels, currenty * pixels})) return;
    painter->setFont(qtfont(font));
    painter->setPen(ink(textcolor));
    painter->drawText(place(currentx, currenty) + QPointF(0, metrics().ascent()), qtext(utf8));
}

void printsurface::picture(std::string_view name, double x, double y) {
    if (densepicture) return symbols.push_back({std::string(name), x, y});
    const auto found = symbolpictures().find(name);
    if (!painter || found == symbolpictures().end() || found->second.isNull()) return;
    if (!isplain({x * pixels, y * pixels})) return;
    const QSizeF size = found->second.deviceIndependentSize() * screenpixel * pixels;
    const QPointF corner = place(x, y) - QPointF(size.width() / 2, size.height() / 2);
    painter->drawPixmap(QRectF(corner, size), found->second, QRectF(found->second.rect()));
}

double printsurface::textwidth(std::string_view utf8) {
    return metrics().horizontalAdvance(qtext(utf8)) / pixels;
}

double printsurface::textheight() {
    return metrics().height() / pixels;
}
