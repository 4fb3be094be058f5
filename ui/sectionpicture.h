// SPDX-License-Identifier: GPL-3.0-or-later
// A drawing of a bar's section to scale with its axes and its dimensions.
#pragma once

#include <QPainter>
#include <QStringList>
#include <QWidget>

#include "tools/sectionvalues.h"

class sectionpicture : public QWidget {
  public:
    explicit sectionpicture(QWidget* parent);
    // texts are the marks at the dimensions: "B = 150".
    void setsection(int type, const dimensions& d, const QStringList& texts);

  protected:
    void paintEvent(QPaintEvent*) override;

  private:
    QPointF place(double x, double y) const;  // section coordinates to pixels
    void drawoutline(QPainter& p) const;
    void drawaxes(QPainter& p) const;
    void drawdimensions(QPainter& p) const;

    int type = 0;
    dimensions d{};
    QStringList marks;
    std::vector<std::vector<point2>> outline;
    double width = 0, height = 0;  // of the outline
    double scale = 1;              // pixels a unit
};
