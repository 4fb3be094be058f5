// SPDX-License-Identifier: GPL-3.0-or-later
// The object that stands in the buffers, drawn beside its variables. A drag turns it.
#pragma once

#include <QPointF>
#include <QWidget>
#include <vector>

class objectpicture : public QWidget {
  public:
    explicit objectpicture(QWidget* parent);
    void takeobject();  // what stands in the buffers now
    void empty();
    void lookfrom(double turn, double height);  // degrees round z and above the ground

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    struct place {
        double x, y, z;
    };
    struct face {
        int corner[4];
        int corners, group;
        double depth;
    };
    void chooseview();
    QPointF project(const place& at, double& depth) const;

    std::vector<place> places;
    std::vector<face> faces;
    std::vector<std::vector<place>> contours;
    double azimuth = 0, elevation = 0;  // degrees
    bool flat = false, turned = false;
    QPointF grip;
};
