// SPDX-License-Identifier: GPL-3.0-or-later
// The example drawing of a kind of mesh: the region, its grid, and the numbers of its edges with
// the way in which they run.
#pragma once

#include <QWidget>

class meshpicture : public QWidget {
  public:
    explicit meshpicture(QWidget* parent);
    void setkind(int type);    // entry of meshtypes
    void setedge(int number);  // 1.. stands out, 0 none

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int kind = 0, edge = 0;
};
