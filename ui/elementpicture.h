// SPDX-License-Identifier: GPL-3.0-or-later
// The picture of an element type: nodes in their order, local axes, and what is positive on it.
#pragma once

#include <QWidget>

class elementpicture : public QWidget {
  public:
    explicit elementpicture(QWidget* parent);
    void settype(int type);  // of the catalogue; 0 none

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int type = 0;
};
