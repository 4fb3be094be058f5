// SPDX-License-Identifier: GPL-3.0-or-later
// A page as a scalable picture (SVG 1.1): strokes, fillings and letters as such, so that a drawing
// program can go on with them. Shapes go to the file as they are drawn.
#pragma once

#include <string>
#include <string_view>

#include "core/textfile.h"
#include "view/surface.h"

class svgsurface : public surface {
  public:
    // Width and height in centimetres. The sizes of letters are those of a surface of the screen;
    // without one they are as wide as most. Throws errpathaccess.
    svgsurface(const std::string& path, double width, double height, surface* letters);
    // Takes the target's place. Throws errdiskfull, errpathaccess.
    void commit();

    bool aspaper = true;  // what is as pale as paper is drawn in black

    void clear(colour background) override;
    void point(double x, double y, colour c) override;
    void line(double x1, double y1, double x2, double y2, colour c) override;
    void box(double x1, double y1, double x2, double y2, colour c) override;
    void circle(double x, double y, double radius, colour c) override;
    void polygon(const point2* p, int n, colour edge) override;
    void text(std::string_view utf8) override;
    void picture(std::string_view name, double x, double y) override;
    double textwidth(std::string_view utf8) override;
    double textheight() override;
    double width() const override { return framewidth; }
    double height() const override { return frameheight; }
    double pixpercm() const override { return 100; }
    void toframe(double left, double top, double width, double height) override;

  private:
    struct strokekind {
        colour c = 0;
        int width = 0;
        pens style = pens::solid;
        bool operator==(const strokekind&) const = default;
    };
    svgsurface& number(double centimetres);
    svgsurface& attribute(const char* name, double centimetres);
    svgsurface& colourof(const char* name, colour c);
    void strokeof(const strokekind& s);
    void filling();
    void endline();
    colour ink(colour c) const;

    textout out;
    surface* letters;
    double framewidth, frameheight;
    int frames = 0;
    // Strokes of one kind that follow one another are one path.
    strokekind now;
    int strokes = 0;
    point2 end{};
};

// The picture of a symbol as a PNG file, and its size in centimetres; nothing where it has none.
// The window hangs its own in.
struct symbolfile {
    std::string png;
    double width = 0, height = 0;
};
extern symbolfile (*symbolpng)(std::string_view name);
