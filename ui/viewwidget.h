// SPDX-License-Identifier: GPL-3.0-or-later
// One view of the main window: shows its surface, and turns mouse and wheel into the calls of the
// mouse driver. The wheel zooms at the pointer, the middle button pans,
// with Shift it turns, and pressed twice it fits.
#pragma once

#include <QImage>
#include <QPointF>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>
#include <QWidget>

#include "core/platform.h"
#include "ui/qtsurface.h"

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

  protected:
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
    void redrawsoon();
    int barwidth() const;  // logical pixels
    void layoutbars();

    int nview;
    QImage still;
    QScrollBar *horizontal, *vertical;
    QToolButton *smaller, *fit, *larger;
    enum class drags { none, pan, turn };
    drags held = drags::none;  // by the middle button
    QPointF from;
    QPointF pointer;  // centimetres
    QTimer hovering;
    QTimer later;  // gathers the redraws of wheel and pan
};
