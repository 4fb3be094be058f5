// SPDX-License-Identifier: GPL-3.0-or-later
// One view of the main window.
#include "ui/viewwidget.h"

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QTouchEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/session.h"
#include "core/views.h"
#include "edit/Mouseprocedures.h"
#include "edit/hover.h"
#include "edit/selection.h"
#include "post/probe.h"
#include "ui/icons.h"
#include "view/moddraw.h"
#include "view/quickdraw.h"
#include "view/setviews.h"

static const double cmperinch = 2.54, twipsperinch = 1440;
static const double wheelfactor = 1.2;   // enlargement a notch
static const double notch = 120;         // wheel units a notch
static const double turnperpixel = 0.4;  // degrees
static const int restpause = 150;        // milliseconds without a move
static const int steady = 4;             // pixels that a click may move

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
    connect(&later, &QTimer::timeout, this, [this] {
        if (!isquickwanted()) return drawview(nview);
        drawquick(nview);
        resting.start(restpause);
    });
    resting.setSingleShot(true);
    connect(&resting, &QTimer::timeout, this, [this] { drawview(nview); });
    setAttribute(Qt::WA_AcceptTouchEvents);
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
    if (mousenow().cube) drawcube(painter);
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

// --- buttons ------------------------------------------------------------------------------------

void viewwidget::pressed(Qt::MouseButton button, const QPointF& pixel, Qt::KeyboardModifiers keys) {
    const QPointF at = place(pixel);
    if (button == Qt::LeftButton && keys & Qt::ControlModifier) pickmode = picks::add;
    if (button == Qt::LeftButton && keys & Qt::ShiftModifier) pickmode = picks::takeaway;
    viewmousedown(nview, buttonof(button), at.x(), at.y());
}

void viewwidget::released(Qt::MouseButton button, const QPointF& pixel) {
    const QPointF at = place(pixel);
    viewmouseup(nview, buttonof(button), at.x(), at.y());
    pickmode = picks::told;
}

void viewwidget::mousePressEvent(QMouseEvent* event) {
    if (menulock) return;
    // What a script presses is meant for the model.
    oncube =
        event->spontaneous() && event->button() == Qt::LeftButton && presscube(event->position());
    if (oncube) return;
    const viewmoves drag = dragof(event->button(), event->modifiers());
    from = event->position();
    if (drag == viewmoves::none) return pressed(event->button(), from, event->modifiers());
    activeview = nview;
    if (event->button() == Qt::RightButton) {
        maydrag = from;
        return;
    }
    held = drag;
    setCursor(held == viewmoves::turn ? Qt::SizeAllCursor : Qt::ClosedHandCursor);
}

void viewwidget::moveby(viewmoves does, const QPointF& way, const QPointF& at) {
    const double perpixel = 1.01;  // enlargement
    switch (does) {
        case viewmoves::turn:
            turnangles(nview, way.x() * turnperpixel, -way.y() * turnperpixel);
            break;
        case viewmoves::pan:
            panview(nview, place(way).x(), place(way).y());
            break;
        case viewmoves::zoom:
            zoomview(nview, place(at).x(), place(at).y(), std::pow(perpixel, -way.y()));
            break;
        case viewmoves::none:
            return;
    }
    redrawsoon();
}

void viewwidget::mouseMoveEvent(QMouseEvent* event) {
    if (menulock) return;
    const QPointF pixel = event->position();
    if (maydrag && (pixel - *maydrag).manhattanLength() > steady) {
        held = dragof(Qt::RightButton, event->modifiers());
        maydrag.reset();
    }
    if (held != viewmoves::none) {
        const QPointF way = pixel - from, middle = rect().center();
        from = pixel;
        return moveby(held, way, held == viewmoves::zoom ? middle : pixel);
    }
    const QPointF at = place(pixel);
    viewmousemove(nview, buttonof(event->buttons()), at.x(), at.y());
    pointer = at;
    hovercube(pixel);
    if (event->buttons() == Qt::NoButton && !hovering.isActive()) hovering.start();
}

void viewwidget::mouseReleaseEvent(QMouseEvent* event) {
    if (held != viewmoves::none) {
        held = viewmoves::none;
        unsetCursor();
        return redrawnow();
    }
    if (menulock || event->button() == Qt::MiddleButton || std::exchange(oncube, false)) return;
    if (maydrag) {  // a click after all
        maydrag.reset();
        pressed(event->button(), event->position(), event->modifiers());
    }
    released(event->button(), event->position());
}

void viewwidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (menulock || event->button() != Qt::MiddleButton) return mousePressEvent(event);
    activeview = nview;
    fitview(nview);
}

// --- wheel and fingers --------------------------------------------------------------------------

void viewwidget::wheelEvent(QWheelEvent* event) {
    if (menulock) return;
    activeview = nview;
    const viewmoves does = wheelof(event->modifiers());
    const double pixelsanotch = 40;
    QPointF way = event->pixelDelta();
    if (way.isNull()) way = QPointF(event->angleDelta()) * pixelsanotch / notch;
    if (does == viewmoves::zoom) {
        const QPointF at = place(event->position());
        const double notches = event->angleDelta().y() / notch * (mousenow().reversed ? -1 : 1);
        zoomview(nview, at.x(), at.y(), std::pow(wheelfactor, notches));
        redrawsoon();
    } else {
        moveby(does, way, event->position());
    }
    event->accept();
}

// On a touch screen one finger is the left button, which is pressed when it is clear that no second
// one comes; two move the view: their middle pans, their distance zooms.
void viewwidget::touched(const QTouchEvent* event) {
    const auto& points = event->points();
    const QPointF a = points[0].position();
    if (points.size() == 2) {
        if (touch == touches::drag) released(Qt::LeftButton, from);
        const QPointF b = points[1].position(), middle = (a + b) / 2;
        const double apart = std::hypot(a.x() - b.x(), a.y() - b.y());
        if (touch == touches::two && apart > 0 && fingers > 0) {
            panview(nview, place(middle - from).x(), place(middle - from).y());
            zoomview(nview, place(middle).x(), place(middle).y(), apart / fingers);
            redrawsoon();
        }
        touch = touches::two;
        activeview = nview;
        from = middle;
        fingers = apart;
        return;
    }
    if (event->type() == QEvent::TouchBegin) {
        touch = touches::may;
        from = a;
    } else if (touch == touches::may && (a - from).manhattanLength() > steady) {
        touch = touches::drag;
        pressed(Qt::LeftButton, from, Qt::NoModifier);
    }
    if (touch != touches::drag) return;
    from = a;
    viewmousemove(nview, mousebuttons::left, place(a).x(), place(a).y());
}

void viewwidget::endtouch(bool cancelled) {
    if (touch == touches::may && !cancelled) pressed(Qt::LeftButton, from, Qt::NoModifier);
    if (touch == touches::drag || (touch == touches::may && !cancelled))
        released(Qt::LeftButton, from);
    if (touch == touches::two) redrawnow();
    touch = touches::none;
}

static bool istouchscreen(const QEvent* event) {
    const auto* const device = static_cast<const QTouchEvent*>(event)->device();
    return device && device->type() == QInputDevice::DeviceType::TouchScreen;
}

bool viewwidget::event(QEvent* event) {
    switch (menulock ? QEvent::None : event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
            if (!istouchscreen(event)) break;
            touched(static_cast<QTouchEvent*>(event));
            event->accept();
            return true;
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            if (!istouchscreen(event)) break;
            endtouch(event->type() == QEvent::TouchCancel);
            return true;
        case QEvent::NativeGesture: {
            const auto* const gesture = static_cast<QNativeGestureEvent*>(event);
            const QPointF at = place(gesture->position());
            if (gesture->gestureType() == Qt::ZoomNativeGesture)
                zoomview(nview, at.x(), at.y(), 1 + gesture->value());
            else if (gesture->gestureType() == Qt::PanNativeGesture)
                panview(nview, place(gesture->delta()).x(), place(gesture->delta()).y());
            else
                break;
            activeview = nview;
            redrawsoon();
            return true;
        }
        default:
            break;
    }
    return QWidget::event(event);
}

// --- the cube -----------------------------------------------------------------------------------

viewcube viewwidget::cube() const {
    const bool small = std::min(width(), height()) < 400;
    const double half = small ? 13 : 20, off = 2.2 * half;  // pixels
    const double right = width() - (barsshown() ? barwidth() : 0);
    return {nview, {right - off, off}, half};
}

void viewwidget::drawcube(QPainter& painter) const {
    const QColor colours[] = {QColor(190, 0, 0), QColor(0, 120, 0), QColor(0, 0, 200)};
    const viewcube shown = cube();
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(std::max(9, int(width() > 500 ? 12 : 9)));
    painter.setFont(font);
    for (const cubepart& face : shown.faces) {
        QPolygonF outline;
        for (const point2& p : face.outline) outline << QPointF(p.x, p.y);
        const bool under = face.name == cubename;
        painter.setPen(QPen(QColor(110, 110, 120), 1));
        painter.setBrush(under ? QColor(255, 200, 110) : QColor(235, 238, 244, 215));
        painter.drawPolygon(outline);
        const double readable = 0.35;  // cosine
        if (face.facing < readable) continue;
        painter.setPen(colours[face.name.back() - 'X']);
        painter.drawText(outline.boundingRect(), Qt::AlignCenter,
                         QString::fromStdString(face.name));
    }
    for (const cubepart& corner : shown.corners) {
        if (corner.name != cubename) continue;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 165, 0));
        painter.drawEllipse(QPointF(corner.outline[0].x, corner.outline[0].y), 5, 5);
    }
}

void viewwidget::hovercube(const QPointF& pixel) {
    const cubepart* part = nullptr;
    std::optional<viewcube> shown;
    if (mousenow().cube) {
        shown.emplace(cube());
        part = shown->at(pixel.x(), pixel.y());
    }
    const std::string name = part ? part->name : "";
    if (name == cubename) return;
    cubename = name;
    setToolTip(part ? tr("Look from %1").arg(QString::fromStdString(name)) : QString());
    update();
}

bool viewwidget::presscube(const QPointF& pixel) {
    if (!mousenow().cube) return false;
    const viewcube shown = cube();
    const cubepart* const part = shown.at(pixel.x(), pixel.y());
    if (part == nullptr) return false;
    activeview = nview;
    lookfrom(nview, part->vertical, part->horizontal);
    update();
    return true;
}

// By the menu key; the pointer's right button is told by its press.
void viewwidget::contextMenuEvent(QContextMenuEvent* event) {
    if (!menulock && event->reason() == QContextMenuEvent::Keyboard) showviewmenu(nview);
    event->accept();
}

void viewwidget::leaveEvent(QEvent*) {
    hovering.stop();
    endhover();
    hovercube({-1, -1});
}

void viewwidget::redrawsoon() {
    resting.stop();
    if (!later.isActive()) later.start();
}

// The view has come to rest.
void viewwidget::redrawnow() {
    if (!later.isActive() && !resting.isActive()) return;
    later.stop();
    resting.start(0);
}
