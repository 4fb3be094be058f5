// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing surface of a screen view: one image a plane, strokes of one pen gathered and drawn
// in one pass. Nothing here knows of widgets; the view widget shows the images.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QLineF>
#include <QPainter>
#include <QPixmap>
#include <array>
#include <map>
#include <memory>
#include <vector>

#include "view/surface.h"

class qtsurface : public surface {
  public:
    ~qtsurface() override;

    // Size in logical pixels, device pixels a logical one, logical pixels a centimetre.
    void resize(int width, int height, double ratio, double pixels);
    void paint(QPainter& painter);  // all planes that hold something
    QImage picture();               // the planes as one image

    void clear(colour background) override;
    void toplane(planes p) override;
    void clearplane(planes p) override;
    void point(double x, double y, colour c) override;
    void line(double x1, double y1, double x2, double y2, colour c) override;
    void box(double x1, double y1, double x2, double y2, colour c) override;
    void circle(double x, double y, double radius, colour c) override;
    void polygon(const point2* p, int n, colour edge) override;
    void text(std::string_view utf8) override;
    void picture(std::string_view name, double x, double y) override;
    double textwidth(std::string_view utf8) override;
    double textheight() override;
    double width() const override { return pixels > 0 ? w / pixels : 0; }
    double height() const override { return pixels > 0 ? h / pixels : 0; }
    double pixpercm() const override { return pixels * ratio; }
    void show() override;

    std::function<void()> onshow;  // the images have changed

  private:
    struct stroke {
        colour c = 0;
        int width = 0;
        pens style = pens::solid;
        bool operator==(const stroke&) const = default;
    };
    QImage& image(planes p);
    QPainter& painter();
    void close();
    void flush();
    void endstrokes();
    bool erases(colour c) const { return (erasing || plane != planes::model) && c == background; }
    double penwidth(const stroke& s) const;
    QPen pen(const stroke& s) const;
    QBrush brush() const;
    void setmode(QPainter& p, bool erase, bool smoothed);
    void usefacet(QPainter& p, const stroke& edge);
    void align(point2& a, point2& b) const;
    bool iscovered(const point2& a, const point2& b);
    bool isoutside(std::string_view utf8) const;
    void usefont();
    void stamp(double x, double y, double radius, colour c, bool erase);

    int w = 0, h = 0;
    double ratio = 1, pixels = 0;
    int columns = 1, rows = 1;  // device pixels
    std::array<QImage, nplanes> layersofplanes;
    std::array<bool, nplanes> used{};
    planes plane = planes::model;
    colour background = 0;
    std::unique_ptr<QPainter> brushwork;
    std::vector<QLineF> lines;
    std::vector<point2> corners;  // of the polygon in work
    std::vector<QPointF> polygonpoints;
    stroke now;
    // What the painter is set for, while the last operation was a polygon.
    bool facetset = false, facetfilled = false, facetsmooth = false, faceterasing = false;
    stroke facetedge;
    colour facetfill = 0;
    QImage stampimage;  // a small disc, drawn once for many nodes
    stroke stampkey;
    double stampradius = 0;
    bool stamperases = false;
    labelfont fontkey;  // of textfont, which labels by the thousand share
    std::unique_ptr<QFont> textfont;
    std::unique_ptr<QFontMetricsF> metrics;
    // Device pixels that hold such a disc already: those marked with the present round. What
    // covers discs begins a new round.
    std::vector<unsigned> stamped;
    unsigned round = 1;
    // Device pixels that short strokes of the present pen have passed since anything else was
    // drawn.
    std::vector<unsigned> passed;
    unsigned strokeround = 1;
};

// Colour and font of the toolkit for those of the core.
QColor qtcolor(colour c);
QFont qtfont(const labelfont& font);
// Pictures of symbols by name, common to all views.
std::map<std::string, QPixmap, std::less<>>& symbolpictures();
