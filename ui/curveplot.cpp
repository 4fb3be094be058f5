// SPDX-License-Identifier: GPL-3.0-or-later
// Axes and curves.
#include "ui/curveplot.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "post/plainnumber.h"

static const QColor curvecolours[] = {QColor(14, 75, 145), QColor(192, 80, 20), QColor(30, 130, 80),
                                      QColor(130, 50, 140), QColor(110, 110, 20)};

curveplot::curveplot(QWidget* parent) : QWidget(parent) {
    setMinimumSize(360, 200);
}

void curveplot::show(std::vector<std::vector<QPointF>> curves, const QString& across,
                     const QString& up) {
    lines = std::move(curves);
    horizontal = across;
    vertical = up;
    update();
}

double roundstep(double length, int parts) {
    const double rough = length / parts, power = std::pow(10, std::floor(std::log10(rough)));
    for (const double step : {1.0, 2.0, 5.0})
        if (rough <= step * power) return step * power;
    return 10 * power;
}

static QString numbered(double x, double step) {
    return QString::fromStdString(shorttext(std::fabs(x) < step * 1e-9 ? 0 : x));
}

void curveplot::draw(QPainter& p, const QRectF& area) const {
    const QPen axis(QColor(90, 90, 90), 1), grid(QColor(222, 222, 222), 1);
    p.fillRect(area, Qt::white);
    QRectF bounds;
    QPointF most, least;
    bool any = false;
    for (const auto& line : lines)
        for (const QPointF& at : line) {
            if (!any || at.y() > most.y()) most = at;
            if (!any || at.y() < least.y()) least = at;
            bounds = any ? bounds.united(QRectF(at, QSizeF(1e-300, 1e-300))) : QRectF(at, QSizeF());
            any = true;
        }
    if (!any) return;
    double low = std::min(0.0, least.y()), high = std::max(0.0, most.y());
    if (low == high) high = low + 1;
    const double left = bounds.left(), width = bounds.width() > 0 ? bounds.width() : 1;
    const QFontMetricsF metrics(p.font(), p.device());
    const double line = metrics.height(), side = metrics.horizontalAdvance("-0.0000E-00");
    const QRectF inner = area.adjusted(side + 6, line * 1.6, -14, -2.6 * line);
    const auto place = [&](const QPointF& at) {
        return QPointF(inner.left() + (at.x() - left) / width * inner.width(),
                       inner.bottom() - (at.y() - low) / (high - low) * inner.height());
    };
    const double up = roundstep(high - low, 6), across = roundstep(width, 6);
    for (double y = std::ceil(low / up) * up; y <= high + up * 1e-9; y += up) {
        const double at = place({left, y}).y();
        p.setPen(grid);
        p.drawLine(QPointF(inner.left(), at), QPointF(inner.right(), at));
        p.setPen(axis);
        p.drawText(QRectF(area.left(), at - line / 2, side + 2, line),
                   Qt::AlignRight | Qt::AlignVCenter, numbered(y, up));
    }
    for (double x = std::ceil(left / across) * across; x <= left + width * (1 + 1e-9);
         x += across) {
        const double at = place({x, low}).x();
        p.setPen(grid);
        p.drawLine(QPointF(at, inner.top()), QPointF(at, inner.bottom()));
        p.setPen(axis);
        p.drawText(QRectF(at - side / 2, inner.bottom() + 3, side, line), Qt::AlignCenter,
                   numbered(x, across));
    }
    p.setPen(axis);
    p.drawLine(place({left, 0}), place({left + width, 0}));
    p.drawLine(inner.bottomLeft(), inner.topLeft());
    p.drawText(QRectF(inner.left(), area.bottom() - line * 1.3, inner.width(), line),
               Qt::AlignCenter, horizontal);
    p.drawText(QRectF(area.left() + 4, area.top() + 2, area.width(), line), Qt::AlignLeft,
               vertical);
    p.setRenderHint(QPainter::Antialiasing, true);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        QPolygonF polygon;
        for (const QPointF& at : lines[i]) polygon << place(at);
        p.setPen(QPen(curvecolours[i % std::size(curvecolours)], 1.8));
        p.drawPolyline(polygon);
    }
    for (const QPointF& at : {most, least}) {
        const QPointF mark = place(at);
        const QString text = QString::fromStdString(shorttext(at.y()));
        const double wide = metrics.horizontalAdvance(text);
        const double x = std::clamp(mark.x() - wide / 2, inner.left(), inner.right() - wide);
        const bool above = at == most && mark.y() - line > area.top() + line;
        p.setPen(Qt::black);
        p.setBrush(Qt::black);
        p.drawEllipse(mark, 2.5, 2.5);
        p.drawText(QPointF(x, above ? mark.y() - 5 : mark.y() + metrics.ascent() + 3), text);
    }
}

void curveplot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    draw(painter, rect());
}
