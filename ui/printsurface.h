// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing surface of a printed page, on paper or in a PDF file: true centimetres, whatever the
// resolution of the device. What is drawn stays; there is nothing to erase on paper.
//
// A view of very many strokes goes to the page as one picture of the printer's resolution: a PDF of
// a million elements would have hundreds of megabytes and take minutes to show.
#pragma once

#include <QPainter>
#include <memory>
#include <string>
#include <vector>

#include "ui/qtsurface.h"
#include "view/surface.h"

class printsurface : public surface {
  public:
    bool aspaper = true;  // no background is filled, and what is as pale as paper is drawn in black
    // The painter is active on the device; paper is its drawing area in device pixels.
    void begin(QPainter* painter, const QRectF& paper, double pixelspercm);
    void end();

    void clear(colour) override;
    void point(double x, double y, colour c) override;
    void line(double x1, double y1, double x2, double y2, colour c) override;
    void box(double x1, double y1, double x2, double y2, colour c) override;
    void circle(double x, double y, double radius, colour c) override;
    void polygon(const point2* p, int n, colour edge) override;
    void text(std::string_view utf8) override;
    void picture(std::string_view name, double x, double y) override;
    double textwidth(std::string_view utf8) override;
    double textheight() override;
    double width() const override { return frame.width() / pixels; }
    double height() const override { return frame.height() / pixels; }
    double pixpercm() const override { return pixels; }
    void toframe(double left, double top, double width, double height) override;

  private:
    QColor ink(colour c) const;
    QPen pen(colour c, double widths) const;
    QBrush brush() const;
    QFontMetricsF metrics() const;
    QPointF place(double x, double y) const { return {x * pixels, y * pixels}; }

    qtsurface*
    densesurface();  // the picture of a view of very many strokes, with the present settings
    void enddense();

    std::unique_ptr<qtsurface> densepicture;
    struct symbol {
        std::string name;
        double x, y;
    };
    std::vector<symbol> symbols;  // over that picture
    QPainter* painter = nullptr;
    QRectF paper, frame;  // frame: relative to the paper
    double pixels = 1;    // a centimetre
    std::vector<QPointF> corners;
};
