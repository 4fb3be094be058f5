// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing of the element types, in the local axes as a reader sees them: e1 to the right, e2 into
// the picture, e3 upwards. The axes have the colours that the views give them.
#include "ui/elementpicture.h"

#include <QPainter>
#include <cmath>

#include "core/catalogue.h"
#include "core/codes.h"

namespace {
struct place {
    double x, y, z;
};

class drawing {
  public:
    drawing(QWidget& w) : p(&w), ink(w.palette().color(QPalette::Text)) {
        p.setRenderHint(QPainter::Antialiasing);
        p.fillRect(w.rect(), w.palette().base());
        scale = std::min(w.width() / 15.0, w.height() / 7.6);
        middle = QPointF(w.width() / 2.0, w.height() * 0.56);
        QFont font = p.font();
        font.setPixelSize(std::max(9, int(scale * 0.5)));
        p.setFont(font);
    }
    QPointF at(const place& a) const {
        return middle + scale * QPointF(a.x + 0.45 * a.y, 0.1 * a.x - 0.38 * a.y - a.z);
    }
    void line(const place& a, const place& b, const QColor& c, double width) {
        p.setPen(QPen(c, width * scale, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(at(a), at(b));
    }
    // An arrow with one head, two for a moment.
    void arrow(const place& a, const place& b, const QColor& c, const QString& name, int heads) {
        line(a, b, c, 0.07);
        const QPointF from = at(a), to = at(b);
        const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
        if (length == 0) return;
        const QPointF along = (to - from) / length, across(-along.y(), along.x());
        p.setPen(Qt::NoPen);
        p.setBrush(c);
        for (int i = 0; i < heads; ++i) {
            const QPointF tip = to - along * (0.38 * scale * i);
            const QPointF foot = tip - along * (0.4 * scale);
            p.drawPolygon(
                QPolygonF({tip, foot + across * (0.15 * scale), foot - across * (0.15 * scale)}));
        }
        words(to + along * (0.42 * scale), name, c);
    }
    void words(const QPointF& centre, const QString& text, const QColor& c) {
        p.setPen(c);
        const double half = 4 * scale;
        p.drawText(QRectF(centre.x() - half, centre.y() - half, 2 * half, 2 * half),
                   Qt::AlignCenter, text);
    }
    void node(const place& a, const QString& name) {
        p.setPen(Qt::NoPen);
        p.setBrush(ink);
        p.drawEllipse(at(a), 0.15 * scale, 0.15 * scale);
        words(at(a) + QPointF(-0.1, 0.6) * scale, name, ink);
    }
    void face(const std::vector<place>& corners) {
        QPolygonF shape;
        for (const place& c : corners) shape << at(c);
        QColor fill = ink;
        fill.setAlphaF(0.1F);
        p.setPen(QPen(ink, 0.06 * scale));
        p.setBrush(fill);
        p.drawPolygon(shape);
    }
    void axes(const place& o, double length) {
        const int lighter = ink.lightness() > 128 ? 150 : 100;  // percent, on a dark ground
        arrow(o, {o.x + length, o.y, o.z}, QColor(208, 40, 40).lighter(lighter), "e1", 1);
        arrow(o, {o.x, o.y + 1.3 * length, o.z}, QColor(20, 140, 50).lighter(lighter), "e2", 1);
        arrow(o, {o.x, o.y, o.z + length}, QColor(50, 100, 230).lighter(lighter), "e3", 1);
    }

    QPainter p;
    QColor ink;
    double scale;
    QPointF middle;
};
}  // namespace

// A bar of rectangular section, its axes, and the forces on the face that looks along e1.
static void drawbar(drawing& d, bool bends) {
    const double b = 0.55, h = 0.5, left = -6, right = 2.2;
    const auto outline = [&](double x) {
        return std::vector<place>{{x, -b, -h}, {x, b, -h}, {x, b, h}, {x, -b, h}};
    };
    const auto back = outline(left), front = outline(right);
    d.face({back[2], front[2], front[3], back[3]});
    d.face({back[0], front[0], front[3], back[3]});
    d.face(front);
    d.node({left, 0, 0}, "");
    d.words(d.at({left, 0, -1.1}), "1", d.ink);
    d.node({right, 0, 0}, "");
    d.words(d.at({right, 0, -1.1}), "2", d.ink);
    d.axes({-3.6, 0, h}, 1.5);
    d.arrow({right, 0, 0}, {right + 1.5, 0, 0}, d.ink, "N", 1);
    if (!bends) return;
    d.arrow({right, 0, 0}, {right, 3.1, 0}, d.ink, "Vy", 1);
    d.arrow({right, 0, 0}, {right, 0, 2}, d.ink, "Vz", 1);
    const place o = {right + 2.9, 0, 0};  // the moments stand aside
    d.arrow(o, {o.x + 1.5, 0, 0}, d.ink, "T", 2);
    d.arrow(o, {o.x, 2.7, 0}, d.ink, "My", 2);
    d.arrow(o, {o.x, 0, 1.9}, d.ink, "Mz", 2);
}

static void drawplate(drawing& d, int nodes, bool membrane) {
    std::vector<place> corners = {{-4.6, -2.6, 0}, {3, -2.6, 0}, {3.4, 2.6, 0}, {-3.8, 2.6, 0}};
    if (nodes == 3) corners = {{-4.6, -2.6, 0}, {3.6, -2.2, 0}, {-1.2, 2.8, 0}};
    d.face(corners);
    for (int i = 0; i < nodes; ++i) d.node(corners[std::size_t(i)], QString::number(i + 1));
    d.axes({nodes == 3 ? -1.9 : -0.8, -0.9, 0}, 1.7);
    if (!membrane) return;
    d.arrow({3.4, 0.2, 0}, {5, 0.2, 0}, d.ink, "SX", 1);
    const double far = nodes == 3 ? 2.9 : 2.7, aside = nodes == 3 ? 4.4 : 3.9;
    d.arrow({-1.2, far, 0}, {-1.2, far + 1.9, 0}, d.ink, "SY", 1);
    d.arrow({aside, -3.2, 0}, {aside, -1.7, 0}, d.ink, "SXY", 1);
}

static void drawzigzag(drawing& d, const place& from, const place& to) {
    const int teeth = 8;
    place last = from;
    for (int i = 1; i <= teeth; ++i) {
        const double t = double(i) / (teeth + 1), up = i % 2 ? 0.3 : -0.3;
        const place next = {from.x + t * (to.x - from.x), from.y,
                            from.z + t * (to.z - from.z) + (from.z == to.z ? up : 0)};
        const place shifted = {next.x + (from.z == to.z ? 0 : up), next.y, next.z};
        d.line(last, shifted, d.ink, 0.06);
        last = shifted;
    }
    d.line(last, to, d.ink, 0.06);
}

static void drawground(drawing& d, double z) {
    d.line({-1, 0, z}, {1, 0, z}, d.ink, 0.08);
    for (double x = -0.9; x < 1; x += 0.45) d.line({x, 0, z}, {x - 0.3, 0, z - 0.4}, d.ink, 0.05);
}

static void drawlink(drawing& d, bool rigid) {
    const place a = {-4, 0, 0}, b = {4, 0, 0};
    if (rigid)
        d.line(a, b, d.ink, 0.25);
    else
        drawzigzag(d, a, b);
    d.node(a, "1");
    d.node(b, "2");
}

elementpicture::elementpicture(QWidget* parent) : QWidget(parent) {
    setMinimumSize(440, 220);
}

void elementpicture::settype(int t) {
    type = t;
    update();
}

void elementpicture::paintEvent(QPaintEvent*) {
    drawing d(*this);
    const int nodes = nodesoftype(float(type));
    if (type == typespring2 || type == typerigid) return drawlink(d, type == typerigid);
    if (nodes == 2) return drawbar(d, type != typetruss);
    if (nodes > 2) return drawplate(d, nodes, type != typeplate3 && type != typeplate4);
    if (nodes == 0) return;
    if (type != typemass) {
        drawzigzag(d, {0, 0, 1}, {0, 0, -1.6});
        drawground(d, -1.6);
    }
    d.node({0, 0, 1}, "1");
}
