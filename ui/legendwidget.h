// SPDX-License-Identifier: GPL-3.0-or-later
// The legend beside the views: its picture, whose bounds are typed over in place, its menu, and a
// row of palettes under it.
#pragma once

#include <QString>
#include <QWidget>
#include <vector>

#include "post/legend.h"
#include "ui/qtsurface.h"

class QLineEdit;
class QToolButton;

class legendwidget : public QWidget {
    Q_OBJECT
  public:
    explicit legendwidget(QWidget* parent);
    qtsurface surface;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void contextMenuEvent(QContextMenuEvent*) override;

  private:
    double pixelspercm() const;
    legendparts partat(const QPointF& pixel) const;
    void edit(legendparts part);
    void showmenu(const QPoint& at);
};

class paletteswatches : public QWidget {
  public:
    explicit paletteswatches(QWidget* parent);
    void refresh();  // the one in use is pressed

  private:
    std::vector<QToolButton*> buttons;
};

// An edit of the legend as the user makes it: drawn, remembered, recorded. False with the reason.
bool changelegend(const QString& what, const QString& value, QString& fault);
