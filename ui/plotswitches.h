// SPDX-License-Identifier: GPL-3.0-or-later
// The switches beside a plot of results that help in reading it.
#pragma once

#include <QWidget>
#include <array>

class QCheckBox;

class plotswitches : public QWidget {
  public:
    explicit plotswitches(QWidget* parent);
    void refresh();  // as the session has them

  private:
    std::array<QCheckBox*, 2> boxes{};
};
