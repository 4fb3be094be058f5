// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing of a section.
#include "ui/sectionpicture.h"

#include <QPainterPath>
#include <cmath>

static const double marginside = 78, margintop = 48;  // pixels, room for the marks
static const double arrow = 6, tail = 14, gap = 4;    // pixels

sectionpicture::sectionpicture(QWidget* parent) : QWidget(parent) {
    setMinimumSize(330, 300);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void sectionpicture::setsection(int t, const dimensions& dims, const QStringList& texts) {
    type = t;
    d = dims;
    marks = texts;
    outline = sectionoutline(type, d);
    width = height = 0;
    for (const auto& polygon : outline)
        for (const point2& p : polygon) {
            width = std::max(width, p.x);
            height = std::max(height, p.y);
        }
    update();
}

QPointF sectionpicture::place(double x, double y) const {
    return {rect().width() / 2.0 + (x - width / 2) * scale,
            rect().height() / 2.0 - (y - height / 2) * scale};
}

void sectionpicture::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(rect(), palette().base());
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    p.setPen(palette().color(QPalette::Text));
    if (outline.empty()) {
        p.drawText(rect(), Qt::AlignCenter, tr("no section"));
        return;
    }
    scale = std::min((rect().width() - 2 * marginside) / width,
                     (rect().height() - 2 * margintop) / height);
    drawoutline(p);
    drawaxes(p);
    drawdimensions(p);
}

void sectionpicture::drawoutline(QPainter& p) const {
    QPainterPath path;  // odd-even: a second polygon inside the first is a hole
    for (const auto& polygon : outline) {
        QPolygonF points;
        for (const point2& at : polygon) points << place(at.x, at.y);
        path.addPolygon(points);
        path.closeSubpath();
    }
    QColor fill = palette().color(QPalette::Highlight);
    fill.setAlpha(70);
    p.setBrush(fill);
    p.setPen(QPen(palette().color(QPalette::Text), 1.4));
    p.drawPath(path);
    p.setBrush(Qt::NoBrush);
}

// The axes through the centroid of the outline.
void sectionpicture::drawaxes(QPainter& p) const {
    const auto [x, y] = sectioncentroid(type, outline);
    const double over = 10 / scale;
    QPen pen(palette().color(QPalette::Text), 0.8, Qt::CustomDashLine);
    pen.setDashPattern({10, 4, 2, 4});
    p.setPen(pen);
    const QPointF right = place(width + over, y), top = place(x, height + over);
    p.drawLine(place(-over, y), right);
    p.drawLine(place(x, -over), top);
    p.drawText(right + QPointF(3, 4), "x");
    p.drawText(top + QPointF(-3, -3), "y");
}

static void arrowhead(QPainter& p, const QPointF& tip, const QPointF& direction) {
    const QPointF across(-direction.y(), direction.x());
    p.drawLine(tip, tip - direction * arrow + across * arrow / 2.5);
    p.drawLine(tip, tip - direction * arrow - across * arrow / 2.5);
}

// A dimension line from a to b, which lie on a horizontal or vertical line, with its text below it
// or, turned, left of it. Where the text does not fit between, the arrows come from outside and it
// stands behind b, on the ground's colour.
static void dimensionline(QPainter& p, const QPointF& a, const QPointF& b, const QString& text,
                          const QColor& ground) {
    const double length = std::hypot(b.x() - a.x(), b.y() - a.y());
    if (length <= 0) return;
    const QPointF along = (b - a) / length;
    const QSizeF size = p.fontMetrics().size(Qt::TextSingleLine, text);
    const bool flat = std::abs(along.x()) > 0.5;
    const bool inside = length > std::max(size.width(), 4 * arrow);
    const QPointF out = inside ? QPointF() : along * tail;
    p.drawLine(a - out, b + out);
    arrowhead(p, a, inside ? -along : along);
    arrowhead(p, b, inside ? along : -along);
    const QRectF box(-size.width() / 2 - 1, -size.height() / 2, size.width() + 2, size.height());
    p.save();
    if (!inside) {
        QPointF middle =
            b + out + (flat ? QPointF(gap + size.width() / 2, 0) : QPointF(0, -gap - arrow));
        middle.setX(std::min(middle.x(), p.window().right() - gap - size.width() / 2));
        p.translate(middle);
    } else {
        p.translate((a + b) / 2);
        if (!flat) p.rotate(-90);
        p.translate(0, flat ? gap + size.height() / 2 : -gap - size.height() / 2);
    }
    p.fillRect(box, ground);
    p.drawText(box, Qt::AlignCenter, text);
    p.restore();
}

void sectionpicture::drawdimensions(QPainter& p) const {
    p.setPen(QPen(palette().color(QPalette::Link), 1));
    QColor ground = palette().color(QPalette::Base);
    ground.setAlpha(200);
    const auto mark = [&](double x1, double y1, double x2, double y2, int k) {
        dimensionline(p, place(x1, y1), place(x2, y2), marks.value(k), ground);
    };
    const double off = 22 / scale;  // from the outline to the line of a dimension
    const double b = d[dimb], tw = d[dimtw], tf = d[dimtf];
    const double left = type == dlprofile ? b : 0;  // the pair's right angle is the one measured
    const bool anglelike = type == lprofile || type == dlprofile;
    mark(left, -off, left + b, -off, dimb);
    if (type == tubular) {
        mark(width - d[dimh], height / 2 - off, width, height / 2 - off, dimh);
        return;
    }
    mark(-off, 0, -off, height, dimh);
    if (type == prismaticbar) return;
    const bool middle = type == beammetric || type == beamus || type == tprofile;
    const double face = middle ? (b - tw) / 2 : type == boxsection ? b - tw : left;
    const double level = anglelike ? 0.75 * height : 0.3 * height;
    mark(face, level, face + tw, level, dimtw);
    if (anglelike) return;
    const double right = width + 1.3 * off;
    mark(right, height - tf, right, height, dimtf);
}
