// SPDX-License-Identifier: GPL-3.0-or-later
// The picture of the legend beside the views: shows its surface and has it drawn when it changes
// its size.
#pragma once

#include <QWidget>

#include "ui/qtsurface.h"

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
};
