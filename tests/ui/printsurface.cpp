// SPDX-License-Identifier: GPL-3.0-or-later
// The surface of a printed page, drawn on an image that stands for the paper: true centimetres at
// every resolution, frames that bound, ink that is seen, and the picture of a dense view.
#include "ui/printsurface.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <cmath>

struct paper {
    explicit paper(double dots) : pixels(dots / 2.54), image(size(dots), QImage::Format_RGB32) {
        image.setDotsPerMeterX(int(std::lround(dots / 0.0254)));
        image.setDotsPerMeterY(image.dotsPerMeterX());
        image.fill(Qt::white);
        painter.begin(&image);
        page.begin(&painter, QRectF(QPointF(0, 0), QSizeF(image.size())), pixels);
    }
    static QSize size(double dots) {
        const double wide = 10, high = 6;  // centimetres
        return {int(wide / 2.54 * dots), int(high / 2.54 * dots)};
    }
    void finish() {
        page.end();
        painter.end();
    }
    QColor at(double x, double y) const {
        return image.pixelColor(int(x * pixels), int(y * pixels));
    }
    bool isblank(double x, double y) const { return at(x, y) == QColor(Qt::white); }
    // Centimetres that are not white along a row or a column of the paper.
    double inkacross(double y) const {
        int count = 0;
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, int(y * pixels)) != QColor(Qt::white);
        return count / pixels;
    }
    double inkdown(double x) const {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            count += image.pixelColor(int(x * pixels), y) != QColor(Qt::white);
        return count / pixels;
    }
    double pixels;
    QImage image;
    QPainter painter;
    printsurface page;
};

TEST(Paper, KeepsCentimetresAtEveryResolution) {
    for (const double dots : {150, 300, 600})
        for (const bool smooth : {true, false}) {
            paper p(dots);
            p.page.smooth = smooth;
            p.page.clear(rgb(255, 255, 255));
            const double width = p.page.width();
            const double letters = p.page.textheight();
            p.page.line(1, 1, 6, 1, rgb(0, 0, 0));
            p.page.drawwidth = 2;
            p.page.line(1, 2, 6, 2, rgb(0, 0, 255));
            p.page.fillsolid = true;
            p.page.fillcolor = rgb(255, 0, 0);
            p.page.circle(3, 4, 1, rgb(255, 0, 0));
            p.finish();
            const double pixel = 1 / p.pixels, edge = 0.04;
            EXPECT_NEAR(width, 10, pixel);
            EXPECT_NEAR(p.inkacross(1), 5, 2 * pixel + edge) << dots << smooth;
            EXPECT_NEAR(p.inkacross(4), 2, 2 * pixel + edge) << dots << smooth;
            EXPECT_GT(p.inkdown(5), 2 * pixel) << "both lines, the second thicker";
            EXPECT_EQ(p.at(3, 4), QColor(Qt::red));
            EXPECT_NEAR(letters, 8.0 / 72 * 2.54 * 1.17, 0.06) << "eight points and the line's gap";
        }
}

TEST(Paper, AFrameIsOriginSizeAndBound) {
    for (const bool smooth : {true, false}) {
        paper p(300);
        p.page.toframe(5, 2, 4, 3);
        p.page.smooth = smooth;
        p.page.clear(rgb(255, 255, 255));
        EXPECT_NEAR(p.page.width(), 4, 0.01);
        EXPECT_NEAR(p.page.height(), 3, 0.01);
        p.page.line(-4, 1, 40, 1, rgb(0, 0, 0));
        p.page.toframe(0, 0, 10, 1);
        p.page.smooth = true;
        p.page.line(2, 0.5, 3, 0.5, rgb(0, 0, 0));
        p.finish();
        EXPECT_NEAR(p.inkacross(3), 4, 0.06) << "from 5 to 9 alone";
        EXPECT_TRUE(p.isblank(4.9, 3));
        EXPECT_FALSE(p.isblank(5.1, 3));
        EXPECT_NEAR(p.inkacross(0.5), 1, 0.04);
    }
}

TEST(Paper, PaleStrokesAreDrawnInBlackAndFacesKeepTheirColour) {
    paper p(300);
    p.page.line(1, 1, 3, 1, rgb(255, 255, 255));
    p.page.line(1, 2, 3, 2, rgb(255, 255, 0));
    const point2 box[] = {{5, 1}, {7, 1}, {7, 3}, {5, 3}};
    p.page.fillsolid = true;
    p.page.fillcolor = rgb(255, 255, 255);
    p.page.polygon(box, 4, rgb(0, 0, 255));
    p.finish();
    EXPECT_LT(p.at(2, 1).lightness(), 60);
    EXPECT_GT(p.at(2, 2).red(), 200) << "yellow is a colour";
    EXPECT_TRUE(p.isblank(6, 2));
    EXPECT_GT(p.inkdown(6), 0.02) << "the face's outline";
}

TEST(Paper, CoordinatesFarOffDoNoHarm) {
    for (const bool smooth : {true, false}) {
        paper p(300);
        p.page.smooth = smooth;
        p.page.clear(rgb(255, 255, 255));
        p.page.line(-1e30, 3, 1e30, 3, rgb(0, 0, 0));
        p.page.line(0, std::nan(""), 1, 1, rgb(0, 0, 0));
        p.page.circle(1e20, 0, 1, rgb(0, 0, 0));
        p.page.moveto(-1e25, 1e25);
        p.page.text("nowhere");
        const point2 far[] = {{-1e9, 4}, {1e9, 4}, {1e9, 4.5}, {-1e9, 4.5}};
        p.page.fillsolid = true;
        p.page.fillcolor = rgb(0, 128, 0);
        p.page.polygon(far, 4, rgb(0, 128, 0));
        p.finish();
        EXPECT_NEAR(p.inkacross(3), 10, 0.02);
        EXPECT_EQ(p.at(5, 4.2), QColor(0, 128, 0));
        EXPECT_TRUE(p.isblank(5, 1));
    }
}
