// SPDX-License-Identifier: GPL-3.0-or-later
// One view of the main window.
#include "ui/viewwidget.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/hover.h"
#include "post/probe.h"
#include "ui/icons.h"
#include "view/moddraw.h"
#include "view/setviews.h"

static const double cmperinch = 2.54, twipsperinch = 1440;
static const double wheelfactor = 1.2;   // enlargement a notch
static const double notch = 120;         // wheel units a notch
static const double turnperpixel = 0.4;  // degrees

viewwidget::viewwidget(int number, QWidget* parent) : QWidget(parent), nview(number) {
    const QString index = QString("(%1)").arg(number - 1);
    setObjectName(QString("view%1").arg(number));
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    horizontal = new QScrollBar(Qt::Horizontal, this);
    vertical = new QScrollBar(Qt::Vertical, this);
    horizontal->setObjectName("HScroll1" + index);
    vertical->setObjectName("VScroll1" + index);
    for (QScrollBar* bar : {horizontal, vertical}) {
        bar->setSingleStep(1);
        bar->setPageStep(4);
        bar->setFocusPolicy(Qt::NoFocus);
        bar->setCursor(Qt::ArrowCursor);
        connect(bar, &QScrollBar::valueChanged, this,
                [this] { scrollview(nview, horizontal->value(), vertical->value()); });
    }
    const auto button = [&](const char* name, const char* icon, const QString& tip, auto action) {
        auto* const b = new QToolButton(this);
        b->setObjectName(name + index);
        b->setIcon(iconof(icon));
        b->setToolTip(tip);
        b->setAutoRaise(true);
        b->setAutoFillBackground(true);
        b->setFocusPolicy(Qt::NoFocus);
        b->setCursor(Qt::ArrowCursor);
        connect(b, &QToolButton::clicked, this, action);
        return b;
    };
    smaller = button("zoomin1", "zoomout", tr("Half size"), [this] { halveview(nview); });
    fit = button("Zoom1", "fit", tr("Fit to view"), [this] { fitview(nview); });
    larger = button("zoomout1", "zoomin", tr("Double size"), [this] { doubleview(nview); });
    surface.onshow = [this] {
        still = QImage();
        update();
    };
    later.setSingleShot(true);
    later.setInterval(0);
    connect(&later, &QTimer::timeout, this, [this] { drawview(nview); });
    hovering.setSingleShot(true);
    hovering.setInterval(30);  // milliseconds between two looks for the item under the pointer
    connect(&hovering, &QTimer::timeout, this, [this] {
        if (menulock || !isVisible()) return;
        hover(nview, pointer.x(), pointer.y());
        tellvalue(nview, pointer.x(), pointer.y());
    });
}

double viewwidget::pixelspercm() const {
    return logicalDpiX() / cmperinch;
}

double viewwidget::pixelspertwip() const {
    return logicalDpiX() / twipsperinch;
}

static bool barsshown() {
    return mnuSettingsItem(scrollbarson).checked;
}

int viewwidget::barwidth() const {
    const int least = 14;
    const double t = scrollbarsof(0, 0, theplatform().workarea().width).thickness;
    return std::max(least, int(std::lround(t * pixelspercm())));
}

// What is drawn lies beside the bars, not under them.
void viewwidget::sizesurface() {
    const int bars = barsshown() ? barwidth() : 0;
    surface.resize(std::max(width() - bars, 1), std::max(height() - bars, 1), devicePixelRatioF(),
                   pixelspercm());
}

void viewwidget::setbars(const scrollrange& range) {
    layoutbars();
    for (QScrollBar* bar : {horizontal, vertical}) {
        const QSignalBlocker quiet(bar);
        const int most = bar == horizontal ? range.horizontal : range.vertical;
        bar->setRange(-most, most);
        bar->setValue(0);
    }
}

void viewwidget::layoutbars() {
    const int t = barwidth();
    horizontal->setGeometry(0, height() - t, width() - 3 * t, t);
    vertical->setGeometry(width() - t, 0, t, height() - t);
    smaller->setGeometry(width() - 3 * t, height() - t, t, t);
    fit->setGeometry(width() - 2 * t, height() - t, t, t);
    larger->setGeometry(width() - t, height() - t, t, t);
    for (QToolButton* b : {smaller, fit, larger}) {
        b->setIconSize(QSize(t - 4, t - 4));
        b->setVisible(barsshown());
    }
    horizontal->setVisible(barsshown());
    vertical->setVisible(barsshown());
}

void viewwidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (still.isNull())
        surface.paint(painter);
    else
        painter.drawImage(QPointF(0, 0), still);
}

void viewwidget::showstill(const QImage& picture) {
    still = picture;
    update();
}

void viewwidget::resizeEvent(QResizeEvent*) {
    sizesurface();
    layoutbars();
}

QPointF viewwidget::place(const QPointF& pixel) const {
    return pixel / pixelspercm();
}

static mousebuttons buttonof(Qt::MouseButtons held) {
    if (held & Qt::LeftButton) return mousebuttons::left;
    if (held & Qt::RightButton) return mousebuttons::right;
    return mousebuttons::none;
}

void viewwidget::mousePressEvent(QMouseEvent* event) {
    if (menulock) return;
    if (event->button() == Qt::MiddleButton) {
        held = event->modifiers() & Qt::ShiftModifier ? drags::turn : drags::pan;
        from = event->position();
        setCursor(held == drags::turn ? Qt::SizeAllCursor : Qt::ClosedHandCursor);
        return;
    }
    const QPointF at = place(event->position());
    viewmousedown(nview, buttonof(event->button()), at.x(), at.y());
}

void viewwidget::mouseMoveEvent(QMouseEvent* event) {
    if (menulock) return;
    if (held != drags::none) {
        const QPointF way = event->position() - from;
        from = event->position();
        if (held == drags::turn)
            turnangles(nview, way.x() * turnperpixel, -way.y() * turnperpixel);
        else
            panview(nview, place(way).x(), place(way).y());
        redrawsoon();
        return;
    }
    const QPointF at = place(event->position());
    viewmousemove(nview, buttonof(event->buttons()), at.x(), at.y());
    pointer = at;
    if (event->buttons() == Qt::NoButton && !hovering.isActive()) hovering.start();
}

void viewwidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton) {
        held = drags::none;
        unsetCursor();
        return;
    }
    if (menulock) return;
    const QPointF at = place(event->position());
    viewmouseup(nview, buttonof(event->button()), at.x(), at.y());
}

void viewwidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (menulock || event->button() != Qt::MiddleButton) return mousePressEvent(event);
    activeview = nview;
    fitview(nview);
}

void viewwidget::wheelEvent(QWheelEvent* event) {
    if (menulock) return;
    const QPointF at = place(event->position());
    activeview = nview;
    zoomview(nview, at.x(), at.y(), std::pow(wheelfactor, event->angleDelta().y() / notch));
    redrawsoon();
    event->accept();
}

// By the menu key; the pointer's right button is told by its press.
void viewwidget::contextMenuEvent(QContextMenuEvent* event) {
    if (!menulock && event->reason() == QContextMenuEvent::Keyboard) showviewmenu(nview);
    event->accept();
}

void viewwidget::leaveEvent(QEvent*) {
    hovering.stop();
    endhover();
}

void viewwidget::redrawsoon() {
    if (!later.isActive()) later.start();
}
