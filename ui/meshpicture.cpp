// SPDX-License-Identifier: GPL-3.0-or-later
// The example drawings of the mesh generator.
#include "ui/meshpicture.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "tools/mesh2d.h"

// The drawings live in a square of side 1, y up. An edge is a quadratic curve over three points.
namespace {
struct exampleedge {
    QPointF start, middle, end;
    QPointF at(double t) const {
        return (1 - t) * (1 - t) * start + 2 * t * (1 - t) * middle + t * t * end;
    }
};
}  // namespace

// Edges 1 and 2 face each other, edges 3 and 4 too; edges 1 and 3 start in the same corner.
static const QPointF joint(0.12, 0.12), along(0.90, 0.16), across(0.16, 0.86), far(0.86, 0.92);

static std::vector<exampleedge> edgesofkind(int kind) {
    const exampleedge bottom = {joint, {0.5, 0.02}, along};
    switch (kind) {
        case quadmesh:
            return {bottom,
                    {across, {0.5, 0.98}, far},
                    {joint, {0.06, 0.5}, across},
                    {along, {0.80, 0.55}, far}};
        case linemesh:
            return {{{0.08, 0.3}, {0.5, 1.0}, {0.92, 0.3}}};
        default: {
            const QPointF top(0.42, 0.92);
            return {bottom, {along, {0.76, 0.6}, top}, {top, {0.2, 0.55}, joint}};
        }
    }
}

meshpicture::meshpicture(QWidget* parent) : QWidget(parent) {
    setMinimumSize(230, 210);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void meshpicture::setkind(int type) {
    kind = type;
    update();
}

void meshpicture::setedge(int number) {
    edge = number;
    update();
}

// Lines of the grid within, as pairs of points.
static std::vector<QLineF> gridof(int kind, const std::vector<exampleedge>& e) {
    std::vector<QLineF> lines;
    const int pieces = 4;
    for (int i = 1; i < pieces; ++i) {
        const double t = double(i) / pieces;
        if (kind == quadmesh) {
            lines.emplace_back(e[0].at(t), e[1].at(t));
            lines.emplace_back(e[2].at(t), e[3].at(t));
        } else if (kind == triangmesh) {
            lines.emplace_back(e[0].at(t), e[1].at(1 - t));
            lines.emplace_back(e[1].at(t), e[2].at(1 - t));
            lines.emplace_back(e[2].at(t), e[0].at(1 - t));
        } else if (kind == transitmesh) {
            lines.emplace_back(e[0].at(t), e[1].at(1 - t));
            if (i == 2) lines.emplace_back(e[2].at(t), e[0].at(1 - t));
        }
    }
    return lines;
}

static QPointF unit(const QPointF& v) {
    return v / std::hypot(v.x(), v.y());
}

static void drawarrow(QPainter& p, const QPointF& tip, const QPointF& way) {
    const double length = 9, half = 3.5;  // pixels
    const QPointF back = tip - length * way, side = half * QPointF(-way.y(), way.x());
    const QPointF corners[] = {tip, back + side, back - side};
    p.setBrush(p.pen().color());
    p.drawPolygon(corners, 3);
    p.setBrush(Qt::NoBrush);
}

static void drawnodes(QPainter& p, const std::vector<QPointF>& points) {
    const double radius = 2.6;  // pixels
    p.setBrush(p.pen().color());
    for (const QPointF& at : points) p.drawEllipse(at, radius, radius);
    p.setBrush(Qt::NoBrush);
}

void meshpicture::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(rect(), palette().base());
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    const double side = std::min(width(), height()) - 44.0;  // room for the numbers
    const QPointF corner((width() - side) / 2, (height() + side) / 2);
    const auto place = [&](const QPointF& at) {
        return corner + QPointF(at.x() * side, -at.y() * side);
    };
    const std::vector<exampleedge> edges = edgesofkind(kind);
    QPointF middle(0, 0);
    for (const exampleedge& e : edges) middle += place(e.at(0.5)) / double(edges.size());
    if (kind == linemesh) middle = place({0.5, 0.2});
    p.setPen(QPen(palette().color(QPalette::Mid), 1));
    for (const QLineF& l : gridof(kind, edges)) p.drawLine(place(l.p1()), place(l.p2()));
    QFont bold = font();
    bold.setBold(true);
    for (std::size_t k = 0; k < edges.size(); ++k) {
        const bool chosen = int(k) + 1 == edge;
        const QColor colour = palette().color(chosen ? QPalette::Highlight : QPalette::Text);
        p.setPen(QPen(colour, chosen ? 3 : 1.6));
        QPainterPath path(place(edges[k].start));
        path.quadTo(place(edges[k].middle), place(edges[k].end));
        p.drawPath(path);
        p.setPen(QPen(colour, 1));
        const QPointF half = place(edges[k].at(0.5));
        const QPointF way = unit(place(edges[k].at(0.56)) - place(edges[k].at(0.5)));
        drawarrow(p, half + 5 * way, way);
        std::vector<QPointF> points;
        for (int i = 0; i <= 4; ++i) points.push_back(place(edges[k].at(i / 4.0)));
        drawnodes(p, points);
        const QPointF out = half + 15 * unit(half - middle);
        p.setFont(bold);
        p.setPen(colour);
        p.drawText(QRectF(out - QPointF(10, 10), QSizeF(20, 20)), Qt::AlignCenter,
                   QString::number(k + 1));
    }
}
