// SPDX-License-Identifier: GPL-3.0-or-later
// Outlines of the icons and the engine that draws them.
#include "ui/icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QStringList>
#include <map>

#include "ui/qtsurface.h"
#include "view/symbols.h"

// An outline lives on a grid of 24 by 24. Words: M x y moves, L x y draws, C x y r a circle,
// R x y w h a box, Q cx cy x y a curve, A x y w h start sweep an arc in degrees, Z closes.
// "+" switches to the accent colour, "=" to a filled shape of the present colour.
static const std::map<std::string, const char*> outlines = {
    {"new", "M 6 3 L 15 3 L 19 7 L 19 21 L 6 21 Z M 15 3 L 15 7 L 19 7"},
    {"open", "M 3 19 L 3 5 L 9 5 L 11 7 L 20 7 L 20 10 + M 3 19 L 6 10 L 22 10 L 19 19 Z"},
    {"save", "M 4 4 L 17 4 L 20 7 L 20 20 L 4 20 Z M 8 4 L 8 9 L 15 9 L 15 4 + R 7 13 10 7"},
    {"print", "M 7 9 L 7 3 L 17 3 L 17 9 R 3 9 18 8 + R 7 14 10 7"},
    {"undo", "M 4 9 L 9 4 M 4 9 L 9 14 + M 4 9 L 14 9 Q 20 9 20 14 Q 20 19 14 19 L 9 19"},
    {"stepback",
     "M 3 4 L 3 14 + M 6 9 L 11 4 M 6 9 L 11 14 M 6 9 L 15 9 Q 21 9 21 14 Q 21 19 15 19 L 10 19"},
    {"stepforward",
     "M 21 4 L 21 14 + M 18 9 L 13 4 M 18 9 L 13 14 M 18 9 L 9 9 Q 3 9 3 14 Q 3 19 9 19 L 14 19"},
    {"record", "C 12 12 9 + = C 12 12 5"},
    {"play", "C 12 12 9 + = M 10 7 L 17 12 L 10 17 Z"},
    {"delete",
     "M 4 7 L 20 7 M 9 7 L 9 4 L 15 4 L 15 7 M 6 7 L 7 21 L 17 21 L 18 7 + M 10 11 L 10 17 "
     "M 14 11 L 14 17"},
    {"cut", "C 6 18 3 C 18 18 3 M 8 16 L 17 3 M 16 16 L 7 3"},
    {"copy", "R 8 8 12 13 + M 5 16 L 4 16 L 4 3 L 15 3 L 15 5"},
    {"paste", "R 5 5 14 16 + R 9 3 6 4 M 8 12 L 16 12 M 8 16 L 16 16"},
    {"node", "M 12 3 L 12 7 M 12 17 L 12 21 M 3 12 L 7 12 M 17 12 L 21 12 + = C 12 12 3"},
    {"element", "M 4 19 L 7 6 L 19 4 L 20 17 Z + = C 4 19 2 C 7 6 2 C 19 4 2 C 20 17 2"},
    {"graphic", "M 4 20 L 20 4 + = C 4 20 2 C 20 4 2"},
    {"circle", "A 3 5 18 18 20 140 + = C 4 11 2 C 20 11 2 C 12 5 2"},
    {"rectangle", "R 4 6 16 12 + = C 4 18 2 C 20 6 2"},
    {"fullcircle", "C 12 12 8 + = C 12 12 2 C 20 12 2"},
    {"arccentre", "A -10 6 28 28 0 90 + M 4 6 L 4 20 L 18 20 = C 4 20 2 C 18 20 2"},
    {"fillet", "M 4 21 L 4 12 M 12 4 L 21 4 + A 4 4 16 16 90 90"},
    {"offset", "M 4 20 L 10 6 L 21 6 + M 9 20 L 14 11 L 21 11"},
    {"split", "M 3 17 L 10 13 M 14 11 L 21 7 + M 9 5 L 15 19"},
    {"trim",
     "M 3 14 L 9 14 M 15 14 L 21 14 M 9 4 L 9 20 M 15 4 L 15 20 + M 10 11 L 14 17 M 14 11 L 10 17"},
    {"array", "R 3 14 6 6 + R 9 9 6 6 R 15 4 6 6"},
    {"sweep",
     "M 4 20 Q 2 12 8 8 + M 14 18 Q 12 10 18 6 M 4 20 L 14 18 M 8 8 L 18 6 M 4 14 L 13 12"},
    {"project",
     "M 3 20 L 21 20 + M 7 4 L 7 16 M 4 13 L 7 16 L 10 13 M 17 4 L 17 16 M 14 13 L 17 16 L 20 13"},
    {"curve", "M 3 19 Q 8 2 21 8 + = C 3 19 2 C 21 8 2"},
    {"mesh",
     "M 4 20 L 4 5 L 20 4 L 20 20 Z + M 4 10 L 20 9 M 4 15 L 20 15 M 9 5 L 9 20 M 15 5 L 15 20"},
    {"patch", "M 4 20 L 6 5 L 20 4 L 19 19 Z + M 6 15 L 10 6 M 9 19 L 15 5 M 14 19 L 19 9"},
    {"fieldsymbols",
     "M 2 12 L 22 12 M 6 12 L 3 18 L 9 18 Z M 18 12 L 15 18 L 21 18 Z + M 1 21 L 11 21 M 13 21 L "
     "23 21 "
     "M 12 2 L 12 10 = M 12 11 L 9 6 L 15 6 Z"},
    {"constraint",
     "M 12 4 L 5 15 L 19 15 Z + M 3 19 L 21 19 M 6 19 L 3 22 M 12 19 L 9 22 M 18 19 L 15 22"},
    {"load", "M 4 20 L 20 20 + M 12 3 L 12 17 M 8 12 L 12 17 L 16 12"},
    {"force", "M 12 3 L 12 18 + M 7 12 L 12 18 L 17 12"},
    {"group", "R 3 3 8 8 R 13 13 8 8 + R 13 3 8 8 R 3 13 8 8"},
    {"loadcase",
     "R 4 4 16 16 + M 8 8 L 8 14 M 6 12 L 8 14 L 10 12 M 16 8 L 16 14 M 14 12 L 16 14 L 18 12"},
    {"combination", "M 4 7 L 12 7 M 8 3 L 8 11 + M 14 15 L 20 21 M 20 15 L 14 21"},
    {"analyse", "R 3 4 18 16 + M 6 16 L 10 10 L 13 13 L 18 7"},
    {"check", "R 4 3 16 18 + M 8 12 L 11 15 L 17 8"},
    {"deformed", "M 3 18 L 21 18 + M 3 18 Q 12 18 21 6"},
    {"contour", "A 3 3 18 18 0 360 + A 7 7 10 10 0 360 A 10 10 4 4 0 360"},
    {"modeshape", "M 3 12 L 21 12 + M 3 12 Q 7 0 12 12 Q 17 24 21 12"},
    {"stress", "M 3 20 L 21 4 + M 7 12 L 7 20 M 12 8 L 12 15 M 17 4 L 17 10"},
    {"report", "R 5 3 14 18 + M 8 8 L 16 8 M 8 12 L 16 12 M 8 16 L 13 16"},
    {"options", "M 3 7 L 21 7 M 3 17 L 21 17 + = C 9 7 3 C 15 17 3"},
    {"colors", "C 12 12 9 + = C 8 9 2 C 14 7 2 C 17 12 2"},
    {"font", "M 4 20 L 10 4 L 16 20 M 6 14 L 14 14 + M 18 20 L 22 20"},
    {"redraw", "A 4 4 16 16 60 280 + M 20 3 L 20 9 L 14 9"},
    {"fit",
     "M 3 9 L 3 3 L 9 3 M 15 3 L 21 3 L 21 9 M 21 15 L 21 21 L 15 21 M 9 21 L 3 21 L 3 15 + R 8 8 "
     "8 8"},
    {"zoomin", "C 10 10 7 M 15 15 L 21 21 + M 7 10 L 13 10 M 10 7 L 10 13"},
    {"zoomout", "C 10 10 7 M 15 15 L 21 21 + M 7 10 L 13 10"},
    {"zoomwindow", "M 3 8 L 3 3 L 8 3 M 16 3 L 21 3 L 21 8 + C 13 13 5 M 17 17 L 22 22"},
    {"iso", "M 12 3 L 20 7 L 20 16 L 12 21 L 4 16 L 4 7 Z + M 4 7 L 12 11 L 20 7 M 12 11 L 12 21"},
    {"viewxy", "M 5 19 L 5 4 M 5 19 L 20 19 + M 2 7 L 5 4 L 8 7 M 17 16 L 20 19 L 17 22"},
    {"viewxz", "M 12 20 L 12 4 M 12 20 L 3 20 + M 9 7 L 12 4 L 15 7 M 6 17 L 3 20 L 6 23"},
    {"viewyz", "M 5 19 L 5 4 M 5 19 L 20 19 + = C 5 19 3 C 20 19 2"},
    {"turnleft", "A 4 6 16 12 200 300 + M 3 9 L 6 14 L 11 11"},
    {"turnright", "A 4 6 16 12 40 300 + M 21 9 L 18 14 L 13 11"},
    {"turnup", "A 6 4 12 16 300 300 + M 15 3 L 10 5 L 13 10"},
    {"turndown", "A 6 4 12 16 120 300 + M 15 21 L 10 19 L 13 14"},
    {"onewindow", "R 3 4 18 16"},
    {"fourwindows", "R 3 4 18 16 + M 12 4 L 12 20 M 3 12 L 21 12"},
    {"snap", "A 5 4 14 14 180 180 M 5 11 L 5 4 M 19 11 L 19 4 + M 3 4 L 7 4 M 17 4 L 21 4"},
    {"size", "R 4 4 16 16 + M 8 8 L 16 16 M 16 12 L 16 16 L 12 16"},
    {"info", "C 12 12 9 + M 12 11 L 12 17 = C 12 7 1.4"},
    {"help", "C 12 12 9 + A 9 6 6 6 -30 210 M 12 12 L 12 14 = C 12 17.5 1.2"},
    {"exit", "M 10 4 L 4 4 L 4 20 L 10 20 + M 9 12 L 21 12 M 16 7 L 21 12 L 16 17"},
    {"demo", "C 12 12 9 + = M 10 8 L 17 12 L 10 16 Z"},
    {"hidden", "M 12 3 L 20 7 L 20 16 L 12 21 L 4 16 L 4 7 Z + = M 4 7 L 12 11 L 12 21 L 4 16 Z"},
    {"toolbars",
     "R 3 4 18 6 R 3 14 18 6 + M 7 7 L 9 7 M 12 7 L 14 7 M 7 17 L 9 17 M 12 17 L 14 17"},
    {"symbols", "M 3 12 L 6 12 L 8 6 L 12 18 L 16 6 L 18 12 L 21 12"},
    {"spring",
     "M 12 2 L 12 5 L 6 7 L 18 10 L 6 13 L 18 16 L 12 18 L 12 20 + M 5 20 L 19 20 M 7 20 L 5 23 "
     "M 12 20 L 10 23 M 17 20 L 15 23"},
    {"rotationspring", "A 4 4 16 16 20 320 A 8 8 8 8 60 300 + M 12 12 L 21 12"},
    {"numbers", "R 3 4 18 16 + M 3 9 L 21 9 M 9 4 L 9 20 M 15 4 L 15 20 M 3 14 L 21 14"},
    {"units", "R 2 8 20 8 + M 6 8 L 6 12 M 10 8 L 10 11 M 14 8 L 14 12 M 18 8 L 18 11"},
    {"refine", "R 4 4 16 16 + M 12 4 L 12 20 M 4 12 L 20 12"},
    {"intersection", "M 4 20 L 20 4 M 4 4 L 20 20 + = C 12 12 2.4"},
    {"extend", "M 3 21 L 11 13 M 4 5 L 21 5 + M 11 13 L 19 5 = C 19 5 2"},
    {"connect", "M 3 7 L 21 3 M 4 16 L 21 21 + M 11 5 L 12 18 = C 11 5 2 C 12 18 2"},
    {"modify", "M 4 20 L 4 15 L 15 4 L 20 9 L 9 20 Z + M 12 7 L 17 12"},
    {"find", "C 10 10 7 M 15 15 L 21 21 + M 7 10 L 13 10 M 7 7 L 12 7 M 7 13 L 11 13"},
    {"mouse",
     "M 7 10 Q 7 3 12 3 Q 17 3 17 10 L 17 14 Q 17 21 12 21 Q 7 21 7 14 Z + M 12 6 L 12 10"},
    {"import", "M 4 13 L 4 20 L 20 20 L 20 13 + M 12 3 L 12 15 M 8 11 L 12 15 L 16 11"},
    {"saveas",
     "M 20 8 L 17 4 L 4 4 L 4 20 L 9 20 M 8 4 L 8 9 L 15 9 L 15 4 + M 12 21 L 12 18 L 18 12 L 21 "
     "15 "
     "L 15 21 Z"},
    {"savesettings",
     "M 3 5 L 14 5 M 3 11 L 14 11 M 3 17 L 11 17 + M 18 6 L 18 21 M 14 17 L 18 21 L 22 17"},
    {"getsettings",
     "M 3 5 L 14 5 M 3 11 L 14 11 M 3 17 L 11 17 + M 18 21 L 18 6 M 14 10 L 18 6 L 22 10"},
    {"preview",
     "M 11 21 L 5 21 L 5 3 L 14 3 L 18 7 L 18 9 M 14 3 L 14 7 L 18 7 + C 15 15 4 M 18 18 L 22 22"},
    {"pagesetup", "R 5 3 14 18 + R 8.5 7 7 10"},
    {"pdf",
     "M 6 3 L 15 3 L 19 7 L 19 21 L 6 21 Z M 15 3 L 15 7 L 19 7 + M 12.5 10 L 12.5 18 M 9 14.5 L "
     "12.5 18 L 16 14.5"},
    {"picture", "R 3 4 18 16 + M 4 18 L 9 12 L 13 16 L 16 13 L 20 18 = C 16 9 1.6"},
    {"table",
     "R 3 4 18 16 M 3 9 L 21 9 + M 6 13 L 10 13 M 14 13 L 18 13 M 6 17 L 10 17 M 14 17 L 18 17"},
    {"move",
     "M 12 3 L 12 21 M 3 12 L 21 12 + M 9 6 L 12 3 L 15 6 M 9 18 L 12 21 L 15 18 M 6 9 L 3 12 L 6 "
     "15 "
     "M 18 9 L 21 12 L 18 15"},
    {"pressure",
     "M 3 20 L 21 20 + M 6 5 L 18 5 M 6 5 L 6 16 M 4 13 L 6 16 L 8 13 M 12 5 L 12 16 M 10 13 L 12 "
     "16 "
     "L 14 13 M 18 5 L 18 16 M 16 13 L 18 16 L 20 13"},
    {"object", "R 4 5 16 14 + C 12 12 4"},
    {"defineobject", "M 13 5 L 3 5 L 3 21 L 19 21 L 19 11 + C 11 13 4 M 19 2 L 19 8 M 16 5 L 22 5"},
    {"modelinfo",
     "M 9 6 L 20 6 M 9 12 L 20 12 M 9 18 L 20 18 + = C 4.5 6 1.7 C 4.5 12 1.7 C 4.5 18 1.7"},
    {"probe", "M 4 20 L 10 12 L 20 12 L 20 4 L 10 4 L 10 12 + = C 4 20 2.4"},
    {"clearprobes",
     "M 4 20 L 10 12 L 20 12 L 20 4 L 10 4 L 10 12 + M 14 16 L 20 22 M 20 16 L 14 22"},
    {"curveplot", "M 3 3 L 3 20 L 21 20 + M 3 15 Q 8 2 12 11 Q 16 19 21 6"},
    {"animation", "M 3 12 Q 7.5 3 12 12 Q 16.5 21 21 12 + M 3 12 Q 7.5 21 12 12 Q 16.5 3 21 12"},
    {"compare", "R 3 4 8 16 R 13 4 8 16 + M 5 16 L 9 8 M 15 8 L 19 16"},
    {"book",
     "M 12 6 Q 8 3 3 5 L 3 19 Q 8 17 12 20 Q 16 17 21 19 L 21 5 Q 16 3 12 6 + M 12 6 L 12 20"},
    {"rules",
     "M 3 5 L 9 5 M 6 2 L 6 8 M 3 12 L 9 12 M 3 19 L 9 19 M 6 16 L 6 22 + M 13 5 L 21 5 M 13 12 L "
     "21 "
     "12 M 13 19 L 21 19"},
    {"envelope", "M 3 12 Q 9 0 21 6 M 3 12 Q 9 24 21 18 + M 3 12 Q 8 9 12 12 Q 16 15 21 12"},
    {"diagram", "M 3 7 L 21 7 + M 3 7 Q 12 31 21 7 M 8 7 L 8 15 M 12 7 L 12 18 M 16 7 L 16 15"},
    {"memberwindow", "R 3 4 18 16 M 6 9 L 18 9 + M 6 9 Q 12 24 18 9"},
    {"balance",
     "M 12 4 L 12 20 M 8 20 L 16 20 M 5 7 L 19 7 + M 5 7 L 2 15 L 8 15 Z M 19 7 L 16 15 L 22 15 Z"},
    {"ghost", "R 3 9 12 12 + M 8 17 L 9 4 L 21 3 L 20 16 Z"},
    {"linelabels", "M 3 19 Q 5 13 8 12 M 17 12 Q 20 11 21 4 + M 10.5 9 L 12.5 8 L 12.5 16"},
    {"loadvalues", "M 6 3 L 6 18 M 2 14 L 6 18 L 10 14 + M 14 8 L 16 7 L 16 16 M 21 7 L 21 16"},
    {"solidmembers",
     "M 5 4 L 19 4 L 19 8 L 14 8 L 14 16 L 19 16 L 19 20 L 5 20 L 5 16 L 10 16 L 10 8 L 5 8 Z"},
    {"grouplegend",
     "M 12 5.5 L 21 5.5 M 12 12 L 21 12 M 12 18.5 L 21 18.5 + = R 3 3.5 5 4 R 3 10 5 4 R 3 16.5 5 "
     "4"},
    {"labelsapart", "R 3 3 11 6 + R 10 15 11 6 M 12 9 L 12 15"},
    {"largersymbols", "M 11 3 L 3 18 L 19 18 Z + M 19 3 L 19 11 M 15 7 L 23 7"},
    {"smallersymbols", "M 9 8 L 4 18 L 14 18 Z + M 15 7 L 23 7"},
    {"palette", "R 4 3 6 18 + = R 4 15 6 6"},
};

namespace {

class outlineengine : public QIconEngine {
  public:
    explicit outlineengine(const char* o) : outline(o) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap map(size);
        map.fill(Qt::transparent);
        QPainter painter(&map);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return map;
    }
    QIconEngine* clone() const override { return new outlineengine(outline); }

  private:
    const char* outline;
};

class outlinewords {
  public:
    explicit outlinewords(const char* outline)
        : words(QString(outline).split(' ', Qt::SkipEmptyParts)) {}
    QString next() { return words.value(at++); }  // empty at the end
    // What a word and its numbers draw.
    void addshape(QPainterPath& path, const QString& word) {
        if (word == "M") path.moveTo(point());
        if (word == "L") path.lineTo(point());
        if (word == "Z") path.closeSubpath();
        if (word == "C") {
            const QPointF centre = point();
            const double r = number();
            path.addEllipse(centre, r, r);
        }
        if (word == "R") path.addRect(box());
        if (word == "A") {
            const QRectF around = box();
            const double start = number(), sweep = number();
            path.arcMoveTo(around, start);
            path.arcTo(around, start, sweep);
        }
        if (word == "Q") {
            const QPointF control = point();
            path.quadTo(control, point());
        }
    }

  private:
    double number() { return next().toDouble(); }
    QPointF point() {
        const double x = number();
        return {x, number()};
    }
    QRectF box() {
        const QPointF corner = point(), size = point();
        return {corner, QSizeF(size.x(), size.y())};
    }
    QStringList words;
    int at = 0;
};

void outlineengine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    const double grid = 24;
    const QPalette palette = QApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const bool selected = mode == QIcon::Selected;  // in a list, on the colour of the selection
    const QColor plain =
        palette.color(group, selected ? QPalette::HighlightedText : QPalette::WindowText);
    const QColor accent = mode == QIcon::Disabled || selected ? plain : QColor(0x2a, 0x7d, 0xe1);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / grid, rect.height() / grid);
    QColor colour = plain;
    bool filled = false;
    QPainterPath path;
    const auto draw = [&] {
        painter->setPen(QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(filled ? QBrush(colour) : QBrush(Qt::NoBrush));
        painter->drawPath(path);
        path = QPainterPath();
    };
    outlinewords words(outline);
    for (QString word = words.next(); !word.isEmpty(); word = words.next()) {
        if (word != "+" && word != "=") {
            words.addshape(path, word);
            continue;
        }
        draw();
        if (word == "+") colour = accent;
        if (word == "=") filled = true;
    }
    draw();
    painter->restore();
}

}  // namespace

QIcon iconof(const std::string& name) {
    const auto found = outlines.find(name);
    return found == outlines.end() ? QIcon() : QIcon(new outlineengine(found->second));
}

QIcon programicon() {
    QPixmap map(128, 128);
    map.fill(Qt::transparent);
    QPainter p(&map);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x12, 0x3a, 0x5e));
    p.drawRoundedRect(4, 4, 120, 120, 20, 20);
    p.setPen(QPen(QColor(0x8f, 0xd0, 0xff), 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF k[] = {{40, 24}, {40, 104}, {40, 68}, {88, 24}, {40, 68}, {92, 104}};
    p.drawLine(k[0], k[1]);
    p.drawLine(k[2], k[3]);
    p.drawLine(k[4], k[5]);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xff, 0xb0, 0x3a));
    for (const QPointF& node : {k[0], k[1], k[2], k[3], k[5]}) p.drawEllipse(node, 9, 9);
    p.end();
    return QIcon(map);
}

static QPixmap springpicture(const char* outline, const QColor& colour) {
    const int side = 22;
    QPixmap map =
        outlineengine(outline).pixmap(QSize(side * 2, side * 2), QIcon::Normal, QIcon::Off);
    QPainter p(&map);
    p.setCompositionMode(QPainter::CompositionMode_SourceIn);
    p.fillRect(map.rect(), colour);
    p.end();
    map.setDevicePixelRatio(2);
    return map;
}

void loadspringpictures() {
    const char* const names[] = {"spring", "spring", "rotationspring"};
    for (int row = 0; row < 3; ++row) {
        const char* const outline = outlines.at(names[row]);
        symbolpictures()[pictureof(row, false)] = springpicture(outline, QColor(0, 110, 60));
        symbolpictures()[pictureof(row, true)] = springpicture(outline, QColor(220, 0, 0));
    }
}
