// SPDX-License-Identifier: GPL-3.0-or-later
// The widget of a drawing.
#include "ui/surfacewidget.h"

#include <utility>

surfacewidget::surfacewidget(QWidget* parent, const char* name, std::function<void(surface&)> how)
    : QWidget(parent), draw(std::move(how)) {
    setObjectName(name);
    setAttribute(Qt::WA_OpaquePaintEvent);
    sheet.onshow = [this] { update(); };
}

void surfacewidget::redraw() {
    sheet.clear(backcolor);
    sheet.font = elemlabelfont;
    sheet.textcolor = elemlabelcolor;
    sheet.drawwidth = 1;
    draw(sheet);
    sheet.show();
}

void surfacewidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    sheet.paint(painter);
}

void surfacewidget::resizeEvent(QResizeEvent*) {
    const double cmperinch = 2.54;
    sheet.resize(width(), height(), devicePixelRatioF(), logicalDpiX() / cmperinch);
    redraw();
}
