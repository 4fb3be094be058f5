// SPDX-License-Identifier: GPL-3.0-or-later
// The planes of a screen surface: what is drawn on an upper plane and drawn again in the
// background colour leaves the picture under it as it was.
#include "core/runtime.h"
#include "ui/apng.h"
#include "ui/qtsurface.h"
#include "ui/startup.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QtEndian>
#include <cmath>
#include <limits>

static void drawmodel(qtsurface& s) {
    s.clear(rgb(255, 255, 255));
    s.toplane(planes::model);
    for (int i = 0; i < 20; ++i) s.line(0.2 * i, 0, 4 - 0.2 * i, 4, rgb(0, 0, 0));
    s.fillsolid = true;
    s.fillcolor = rgb(0, 0, 255);
    s.circle(2, 2, 0.5, rgb(0, 0, 255));
    s.moveto(1, 3);
    s.textcolor = rgb(0, 100, 0);
    s.text("Node 1");
}

static void drawmarks(qtsurface& s, colour c, planes plane = planes::marks) {
    s.toplane(plane);
    s.drawwidth = 2;
    s.line(0.3, 0.3, 3.7, 3.1, c);
    s.drawwidth = 1;
    s.drawstyle = pens::dotted;
    s.fillsolid = false;
    s.box(0.5, 0.5, 3, 2.5, c);
    s.drawstyle = pens::solid;
    s.fillsolid = true;
    s.fillcolor = c;
    for (int i = 0; i < 5; ++i) s.circle(0.7 * i, 1.5, 0.075, c);
    s.point(3.3, 0.4, c);
    s.textcolor = c;
    s.moveto(2, 3.2);
    s.text("marked");
}

TEST(Surface, ErasingOnAnUpperPlaneGivesBackWhatLiesUnderIt) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        qtsurface s;
        s.resize(160, 160, ratio, 40);
        drawmodel(s);
        s.show();
        const QImage before = s.picture();
        drawmarks(s, rgb(255, 0, 0));
        s.show();
        EXPECT_NE(s.picture(), before);
        drawmarks(s, rgb(255, 255, 255));
        s.show();
        const QImage after = s.picture();
        for (int y = 0; y < after.height(); ++y)
            for (int x = 0; x < after.width(); ++x)
                ASSERT_EQ(after.pixel(x, y), before.pixel(x, y))
                    << "dirt at " << x << ", " << y << ", scale " << ratio;
    }
}

TEST(Surface, WhatIsErasedFromTheModelLeavesNoTrace) {
    for (const double ratio : {1.0, 2.0}) {
        qtsurface s;
        s.resize(160, 160, ratio, 40);
        s.clear(rgb(255, 255, 255));
        s.show();
        const QImage blank = s.picture();
        drawmarks(s, rgb(255, 0, 0), planes::model);
        s.show();
        EXPECT_NE(s.picture(), blank);
        s.erasing = true;
        drawmarks(s, rgb(255, 255, 255), planes::model);
        s.show();
        s.erasing = false;
        EXPECT_EQ(s.picture(), blank) << "scale " << ratio;
    }
}

// Mesh lines along the raster are sharp and equally wide wherever they fall.
TEST(Surface, StraightLinesCoverWholePixels) {
    for (const double ratio : {1.0, 2.0})
        for (const int width : {1, 2}) {
            qtsurface s;
            s.resize(160, 160, ratio, 40);
            s.clear(rgb(255, 255, 255));
            s.drawwidth = width;
            for (int i = 0; i < 9; ++i) {
                s.line(0.2, 0.2 + 0.3037 * i, 3.8, 0.2 + 0.3037 * i, rgb(0, 0, 0));
                s.line(0.2 + 0.3037 * i, 3, 0.2 + 0.3037 * i, 3.8, rgb(0, 0, 0));
            }
            s.show();
            const QImage picture = s.picture();
            const auto black = [&](bool down) {
                int count = 0;
                for (int i = 0; i < picture.width(); ++i) {
                    const int at = int((down ? 3.2 : 3.4) * 40 * ratio);
                    const QRgb p = down ? picture.pixel(at, i) : picture.pixel(i, at);
                    EXPECT_TRUE(qRed(p) == 0 || qRed(p) == 255) << "smeared " << ratio << width;
                    count += qRed(p) == 0;
                }
                return count;
            };
            EXPECT_EQ(black(true), 9 * width * int(ratio));
            EXPECT_EQ(black(false), 9 * width * int(ratio));
        }
}

// A model at a scale of 1E+30, beside the eye, or with places that are no numbers.
TEST(Surface, CoordinatesBeyondAllBoundsAreCutNotDrawnWrong) {
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = HUGE_VAL;
    qtsurface s;
    s.resize(160, 160, 1, 40);
    s.clear(rgb(255, 255, 255));
    s.smooth = false;
    s.line(-1e30, 2, 1e30, 2, rgb(0, 0, 0));
    s.line(1, -1e12, 1, 1e12, rgb(0, 0, 0));
    for (const double bad : {nan, inf, -inf, 1e300}) {
        s.line(bad, 0, 1, bad, rgb(255, 0, 0));
        s.circle(bad, 1, 0.1, rgb(255, 0, 0));
        s.point(1, bad, rgb(255, 0, 0));
        s.box(bad, bad, 1, 1, rgb(255, 0, 0));
        s.moveto(bad, bad);
        s.text("text");
        const point2 corners[] = {{0, 0}, {bad, 1}, {1, 1}};
        if (bad != 1e300) s.polygon(corners, 3, rgb(255, 0, 0));
    }
    s.fillsolid = true;
    s.fillcolor = rgb(0, 0, 255);
    const point2 half[] = {{3, -1e20}, {1e20, -1e20}, {1e20, 1e20}, {3, 1e20}};
    s.polygon(half, 4, rgb(0, 0, 255));
    s.show();
    const QImage picture = s.picture();
    EXPECT_EQ(picture.pixelColor(80, 80), QColor(0, 0, 0));
    EXPECT_EQ(picture.pixelColor(40, 20), QColor(0, 0, 0));
    EXPECT_EQ(picture.pixelColor(140, 20), QColor(0, 0, 255)) << "the half plane is filled";
    EXPECT_EQ(picture.pixelColor(100, 20), QColor(255, 255, 255));
    int red = 0;
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 160; ++x) red += picture.pixelColor(x, y) == QColor(255, 0, 0);
    EXPECT_EQ(red, 0);
}

// A mesh finer than the pixels, every line drawn twice, against the toolkit's own pass. What is
// drawn over it in another colour and drawn again must come out again.
TEST(Surface, StrokesThatLieOnOthersAreLeftOutUnseen) {
    const double cell = 0.9, cm = 40;  // pixels; pixels a centimetre
    QImage plain(160, 160, QImage::Format_RGB32);
    plain.fill(Qt::white);
    QPainter painter(&plain);
    qtsurface s;
    s.resize(160, 160, 1, cm);
    s.clear(rgb(255, 255, 255));
    s.smooth = false;
    const auto mesh = [&](double to, colour c) {
        for (double x = 10; x < to; x += cell)
            for (double y = 10.3; y < to; y += 7 * cell) {
                painter.setPen(QPen(qtcolor(c), 1));
                const double way[][2] = {{cell, 0.2}, {0.3, 4 * cell}};
                for (const auto& w : way) {
                    painter.drawLine(QLineF(x, y, x + w[0], y + w[1]));
                    s.line(x / cm, y / cm, (x + w[0]) / cm, (y + w[1]) / cm, c);
                    s.line((x + w[0]) / cm, (y + w[1]) / cm, x / cm, y / cm, c);
                }
            }
    };
    mesh(140, rgb(0, 0, 0));
    mesh(90, rgb(255, 0, 0));
    mesh(60, rgb(0, 0, 0));
    s.fillsolid = true;
    s.fillcolor = rgb(255, 255, 255);
    const point2 patch[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    s.polygon(patch, 4, rgb(255, 255, 255));
    mesh(60, rgb(0, 0, 0));
    s.show();
    const QImage picture = s.picture();
    int different = 0, drawn = 0;
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 160; ++x) {
            drawn += plain.pixel(x, y) != qRgb(255, 255, 255);
            different += picture.pixel(x, y) != plain.pixel(x, y);
        }
    EXPECT_GT(drawn, 5000);
    EXPECT_LT(different, drawn / 100);
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const guardedapplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

// The file's structure by its own words: names, lengths, running numbers and checksums of the
// chunks.
TEST(AnimatedPng, HoldsEveryPictureInOrder) {
    const auto picture = [](int i) {
        QImage image(40, 30, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(20 * i, 100, 200));
        return image;
    };
    const QByteArray file = apngof(3, 120, picture);
    QImage first;
    ASSERT_TRUE(first.loadFromData(file, "PNG"));
    EXPECT_EQ(first.pixelColor(5, 5), QColor(0, 100, 200)) << "what others than browsers show";
    const auto numberat = [&](qsizetype at) { return qFromBigEndian<quint32>(file.data() + at); };
    const auto sumof = [](const QByteArray& bytes) {  // the polynomial of PNG, bit by bit
        quint32 sum = ~0u;
        for (const char c : bytes) {
            sum ^= quint8(c);
            for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ (sum & 1 ? 0xEDB88320u : 0u);
        }
        return ~sum;
    };
    QByteArray names;
    quint32 running = 0;
    for (qsizetype at = 8; at < file.size(); at += 12 + qsizetype(numberat(at))) {
        const QByteArray body = file.mid(at + 4, 4 + qsizetype(numberat(at)));
        EXPECT_EQ(numberat(at + 4 + body.size()), sumof(body));
        names += body.left(4) + " ";
        if (!body.startsWith("fcTL") && !body.startsWith("fdAT")) continue;
        EXPECT_EQ(qFromBigEndian<quint32>(body.data() + 4), running++);
    }
    EXPECT_EQ(names, "IHDR acTL fcTL IDAT fcTL fdAT fcTL fdAT IEND ");
    EXPECT_THROW(apngof(2, 50, [](int i) { return QImage(10 + i, 9, QImage::Format_RGB32); }),
                 runtimeerror);
}
