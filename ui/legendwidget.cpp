// SPDX-License-Identifier: GPL-3.0-or-later
// The legend's widget.
#include "ui/legendwidget.h"

#include <QPainter>

#include "post/legend.h"

static const double cmperinch = 2.54;

legendwidget::legendwidget(QWidget* parent) : QWidget(parent) {
    setObjectName("sindex");
    setAttribute(Qt::WA_OpaquePaintEvent);
    surface.onshow = [this] { update(); };
}

// Three lines of heading, ten colours and the exponent in the font of the labels.
QSize legendwidget::sizeHint() const {
    const int lines = 17;
    const QFontMetrics metrics(qtfont(elemlabelfont));
    return {metrics.horizontalAdvance("Combined Stress 0"), lines * metrics.height()};
}

QSize legendwidget::minimumSizeHint() const {
    return {60, sizeHint().height()};
}

void legendwidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    surface.paint(painter);
}

void legendwidget::resizeEvent(QResizeEvent*) {
    surface.resize(width(), height(), devicePixelRatioF(), logicalDpiX() / cmperinch);
    drawlegend();
}
