// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing the buffers from behind to the front.
#include "ui/objectpicture.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "core/colours.h"
#include "core/model.h"
#include "core/session.h"
#include "tools/Graphics.h"
#include "tools/objects.h"
#include "tools/path.h"

static const std::size_t mostfaces = 100000;  // above it the contours stand for the mesh

objectpicture::objectpicture(QWidget* parent) : QWidget(parent) {
    setMinimumSize(300, 260);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setToolTip(tr("Drag to turn"));
}

void objectpicture::empty() {
    places.clear();
    faces.clear();
    contours.clear();
    update();
}

void objectpicture::takeobject() {
    empty();
    for (int n = 1; n <= int(tmpnodes(0, 0)); ++n)
        places.push_back({tmpnodes(n, 1), tmpnodes(n, 2), tmpnodes(n, 3)});
    for (int e = 1; e <= int(tmpelems(0, 0)) && std::size_t(e) <= mostfaces; ++e) {
        face f{};
        for (int k = 1; k <= 4 && tmpelems(e, k) > 0; ++k)
            f.corner[f.corners++] = int(tmpelems(e, k)) - 1;
        f.group = int(tmpelems(e, 5));
        faces.push_back(f);
    }
    for (int g = ngraphics() + 1; g <= ngraphics() + objgraphcount; ++g) {
        const auto shape = pathof(graphics, g);
        if (!shape) continue;
        std::vector<place> line;
        for (const point3& p : polylineof(*shape)) line.push_back({p[0], p[1], p[2]});
        contours.push_back(std::move(line));
    }
    if (!turned) chooseview();
}

void objectpicture::lookfrom(double turn, double height) {
    azimuth = turn;
    elevation = height;
    update();
}

// A flat object is seen from the front, any other one from a corner.
void objectpicture::chooseview() {
    double least[3] = {1e300, 1e300, 1e300}, most[3] = {-1e300, -1e300, -1e300};
    for (const auto& line : contours)
        for (const place& p : line) {
            const double x[3] = {p.x, p.y, p.z};
            for (int k = 0; k < 3; ++k) {
                least[k] = std::min(least[k], x[k]);
                most[k] = std::max(most[k], x[k]);
            }
        }
    const double size = std::max({most[0] - least[0], most[1] - least[1], most[2] - least[2]});
    const auto thin = [&](int k) { return most[k] - least[k] <= 1e-6 * size; };
    flat = thin(0) || thin(1) || thin(2);
    if (thin(2))
        lookfrom(0, 90);
    else if (thin(1))
        lookfrom(0, 0);
    else if (thin(0))
        lookfrom(90, 0);
    else
        lookfrom(30, 25);
}

// x to the right, y up the widget; depth grows towards the eye.
QPointF objectpicture::project(const place& at, double& depth) const {
    const double a = azimuth * pi / 180, h = elevation * pi / 180;
    const double right = at.x * std::cos(a) + at.y * std::sin(a);
    const double away = at.y * std::cos(a) - at.x * std::sin(a);
    depth = at.z * std::sin(h) - away * std::cos(h);
    return {right, at.z * std::cos(h) + away * std::sin(h)};
}

static QColor shadeof(int group) {
    const int c = group >= 1 && group <= groupcolor.upper ? groupcolor(group) : 0x808080;
    return QColor(redof(c), greenof(c), blueof(c));
}

void objectpicture::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().base());
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    double left = 1e300, right = -1e300, bottom = 1e300, top = -1e300;
    const auto include = [&](const QPointF& at) {
        left = std::min(left, at.x());
        right = std::max(right, at.x());
        bottom = std::min(bottom, at.y());
        top = std::max(top, at.y());
    };
    double depth = 0;
    for (const auto& line : contours)
        for (const place& at : line) include(project(at, depth));
    std::vector<QPointF> flatplaces;
    std::vector<double> depths;
    for (const place& at : places) {
        flatplaces.push_back(project(at, depth));
        depths.push_back(depth);
        include(flatplaces.back());
    }
    if (contours.empty()) {
        p.drawText(rect(), Qt::AlignCenter, tr("no object"));
        return;
    }
    const double margin = 14;  // pixels
    const double scale = std::min((width() - 2 * margin) / std::max(right - left, 1e-30),
                                  (height() - 2 * margin) / std::max(top - bottom, 1e-30));
    const auto onwidget = [&](const QPointF& at) {
        return QPointF(width() / 2.0 + (at.x() - (left + right) / 2) * scale,
                       height() / 2.0 - (at.y() - (top + bottom) / 2) * scale);
    };
    for (face& f : faces) {
        f.depth = 0;
        for (int k = 0; k < f.corners; ++k) f.depth += depths[std::size_t(f.corner[k])] / f.corners;
    }
    std::ranges::sort(faces, {}, &face::depth);
    p.setRenderHint(QPainter::Antialiasing);
    for (const face& f : faces) {
        QPolygonF outline;
        for (int k = 0; k < f.corners; ++k)
            outline << onwidget(flatplaces[std::size_t(f.corner[k])]);
        const QColor shade = shadeof(f.group);
        p.setPen(QPen(f.corners == 2 ? shade : palette().color(QPalette::Text),
                      f.corners == 2 ? 2.5 : 0.6));
        p.setBrush(shade.lighter(150));
        if (f.corners == 2)
            p.drawPolyline(outline);
        else
            p.drawPolygon(outline);
    }
    p.setPen(QPen(palette().color(QPalette::Highlight), faces.empty() ? 1.4 : 0.8));
    if (!faces.empty() && !flat) return;
    for (const auto& line : contours) {
        QPolygonF outline;
        for (const place& at : line) outline << onwidget(project(at, depth));
        p.drawPolyline(outline);
    }
}

void objectpicture::mousePressEvent(QMouseEvent* event) {
    grip = event->position();
}

void objectpicture::mouseMoveEvent(QMouseEvent* event) {
    const QPointF way = event->position() - grip;
    grip = event->position();
    turned = true;
    lookfrom(azimuth - way.x() / 2, std::clamp(elevation + way.y() / 2, -90.0, 90.0));
}
