// SPDX-License-Identifier: GPL-3.0-or-later
// A drawing of the core in a dialog: whatever is drawn on the surface, anew with each size.
#pragma once

#include <QWidget>
#include <functional>

#include "ui/qtsurface.h"

class surfacewidget : public QWidget {
  public:
    surfacewidget(QWidget* parent, const char* name, std::function<void(surface&)> draw);
    void redraw();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    qtsurface sheet;
    std::function<void(surface&)> draw;
};
