// SPDX-License-Identifier: GPL-3.0-or-later
// The legend's widget.
#include "ui/legendwidget.h"

#include <QPainter>

#include "post/legend.h"

static const double cmperinch = 2.54;

legendwidget::legendwidget(QWidget* parent) : QWidget(parent) {
    setObjectName("sindex");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    surface.onshow = [this] { update(); };
}

// Three lines of heading, ten colours and the exponent in the font of the labels.
static QSize roomfor(int lines) {
    const QFontMetrics metrics(qtfont(elemlabelfont));
    return {metrics.horizontalAdvance("Combined Stress 0"), lines * metrics.height()};
}

QSize legendwidget::sizeHint() const {
    const int atease = 27;
    return roomfor(atease);
}

QSize legendwidget::minimumSizeHint() const {
    const int closely = 17, narrow = 60;
    return {narrow, roomfor(closely).height()};
}

void legendwidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    surface.paint(painter);
}

void legendwidget::resizeEvent(QResizeEvent*) {
    surface.resize(width(), height(), devicePixelRatioF(), logicalDpiX() / cmperinch);
    drawlegend();
}
