// SPDX-License-Identifier: GPL-3.0-or-later
// Curves over a length: axes with round numbers, the highest and the lowest value marked.
#pragma once

#include <QPointF>
#include <QString>
#include <QWidget>
#include <vector>

class curveplot : public QWidget {
  public:
    explicit curveplot(QWidget* parent);
    void show(std::vector<std::vector<QPointF>> curves, const QString& across, const QString& up);
    // On any painter, in so many of its units; a unit is a pixel of the screen.
    void draw(QPainter& painter, const QRectF& area) const;

  protected:
    void paintEvent(QPaintEvent*) override;

  private:
    std::vector<std::vector<QPointF>> lines;
    QString horizontal, vertical;
};
// A step of 1, 2 or 5 times a power of ten that divides a length into about so many.
double roundstep(double length, int parts);
