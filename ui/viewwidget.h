// SPDX-License-Identifier: GPL-3.0-or-later
// One view of the main window: shows its surface, and turns mouse and wheel into the calls of the
// mouse driver. What the other buttons, the wheel and fingers do to the view is told by
// ui/mousepresets; the middle button pressed twice fits it, and the cube of the axes in its corner
// looks along them.
#pragma once

#include <QImage>
#include <QPointF>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QWidget>
#include <optional>

#include "core/platform.h"
#include "ui/mousepresets.h"
#include "ui/qtsurface.h"
#include "view/viewcube.h"

class QTouchEvent;

class viewwidget : public QWidget {
    Q_OBJECT
  public:
    viewwidget(int number, QWidget* parent);
    int number() const { return nview; }
    qtsurface surface;
    // Logical pixels a centimetre and a twip of this screen.
    double pixelspercm() const;
    double pixelspertwip() const;
    void setbars(const scrollrange& range);
    void sizesurface();
    void showstill(const QImage& picture);  // in place of the surface's, until that is drawn anew
    viewmoves dragging() const { return held; }
    bool presscube(const QPointF& pixel);  // looks from the face or corner that is there

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void mouseDoubleClickEvent(QMouseEvent*) override;
    void wheelEvent(QWheelEvent*) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent*) override;

  private:
    QPointF place(const QPointF& pixel) const;  // centimetres
    viewcube cube() const;
    void drawcube(QPainter& painter) const;
    void hovercube(const QPointF& pixel);
    void moveby(viewmoves does, const QPointF& way, const QPointF& at);  // pixels
    void pressed(Qt::MouseButton button, const QPointF& pixel, Qt::KeyboardModifiers keys);
    void released(Qt::MouseButton button, const QPointF& pixel);
    void touched(const QTouchEvent* event);
    void endtouch(bool cancelled);
    void redrawsoon();
    void redrawnow();
    int barwidth() const;  // logical pixels
    void layoutbars();

    int nview;
    QImage still;
    QScrollBar *horizontal, *vertical;
    QToolButton *smaller, *fit, *larger;
    viewmoves held = viewmoves::none;  // by a button that moves the view
    std::optional<QPointF> maydrag;    // pressed where a drag would move the view, a click not
    QPointF from;
    enum class touches { none, may, drag, two };
    touches touch = touches::none;
    double fingers = 0;    // pixels between two of them
    bool oncube = false;   // the left button was pressed there
    std::string cubename;  // of the part of the cube under the pointer
    QPointF pointer;       // centimetres
    QTimer hovering;
    QTimer later;    // gathers the redraws of wheel and pan
    QTimer resting;  // the whole picture follows a reduced one
};
