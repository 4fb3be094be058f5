// SPDX-License-Identifier: GPL-3.0-or-later
// All that a picture may ask for: a drawing surface in centimetres from its top left corner, x
// right, y down. Screen views, the printer and the recorder of tests implement it.
//
// A screen surface keeps its picture in planes that lie on each other: the model below, then
// loads, constraints, result shapes, selection and work marks, and on top what follows the mouse.
// Drawing in the background colour on an upper plane gives back what lies under it.
#pragma once

#include <string>
#include <string_view>

#include "core/colours.h"
#include "view/camera.h"

enum class planes { model, loads, constraints, results, marks, pointer };
const int nplanes = 6;

enum class pens { solid, dotted };

struct surface {
    virtual ~surface() = default;

    virtual void clear(colour background) = 0;             // all planes
    virtual void toplane(planes) {}                        // where the next operations draw
    virtual void clearplane(planes) {}                     // an upper plane, wholly
    virtual void point(double x, double y, colour c) = 0;  // one pixel; moves the position
    virtual void line(double x1, double y1, double x2, double y2, colour c) = 0;
    virtual void box(double x1, double y1, double x2, double y2, colour c) = 0;
    virtual void circle(double x, double y, double radius, colour c) = 0;  // filled with fillcolor
    virtual void polygon(const point2* p, int n, colour edge) = 0;         // n >= 3, closed for you
    virtual void text(std::string_view utf8) = 0;  // top left at the position, in textcolor
    // The picture stored under a symbol name, its centre at x, y; nothing where none is stored.
    virtual void picture(std::string_view, double, double) {}
    virtual double textwidth(std::string_view utf8) = 0;  // centimetres
    virtual double textheight() = 0;                      // centimetres of one line
    virtual double width() const = 0;                     // centimetres
    virtual double height() const = 0;
    virtual double pixpercm() const = 0;  // device pixels
    virtual void show() {}                // what was drawn so far becomes visible
    // Of a page: the next operations draw in this part of it, which is their origin and size and
    // bounds what they draw. Centimetres from the page's top left corner.
    virtual void toframe(double /*left*/, double /*top*/, double /*width*/, double /*height*/) {}

    void moveto(double x, double y) {
        currentx = x;
        currenty = y;
    }
    void lineto(double x, double y, colour c) { line(currentx, currenty, x, y, c); }

    bool smooth = true;  // edges are smoothed; off for pictures of very many strokes
    // What is drawn in the colour of the background takes the same drawn before away, with its
    // smoothed edges. On the planes above the model it does so always.
    bool erasing = false;
    // Settings of the next operations.
    double currentx = 0, currenty = 0;  // line, line to and point move it to their end
    int drawwidth = 1;                  // pixels
    pens drawstyle = pens::solid;
    bool fillsolid = false;
    colour fillcolor = 0;
    colour textcolor = 0;
    labelfont font;
};

// Where primitives for a view go: its surface, or the printer while the print flags are up.
// Null when nothing is to be drawn.
surface* target(int nview);
extern surface* measuring;  // takes the place of all of them while a picture is measured
extern bool printing;       // a page is being built, on this surface:
extern surface* pageinwork;
extern int toprinter;  // 1 while drawing goes to the printer
