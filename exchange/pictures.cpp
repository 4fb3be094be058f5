// SPDX-License-Identifier: GPL-3.0-or-later
// Sizes, choices and the two kinds of files. State: the choices of the session and the file that
// the dialog is open for.
#include "exchange/pictures.h"

#include <cmath>
#include <filesystem>

#include "core/numtext.h"
#include "core/platform.h"
#include "core/runtime.h"
#include "core/session.h"
#include "core/views.h"
#include "exchange/gate.h"
#include "files/filop.h"
#include "files/saving.h"
#include "view/moddraw.h"
#include "view/svgsurface.h"

std::function<void(const pngpage& page, const std::function<void(surface&)>& draw)> writepng;

static const double cmperinch = 2.54;
static const double leastwidth = 1, mostwidth = 500;  // centimetres
static const double leastdots = 10, mostdots = 2400;
static const double mostpixels = 30000;  // along a side

static std::string picturepath;
static picturechoice lastchoice;

static std::string extensionof(const std::string& path) {
    return std::filesystem::path(path).extension().string();
}

void startpicture(const std::string& path) {
    picturepath = path;
    theplatform().showdialog("viewpicture");
}

void askpicture() {
    filebox box;
    box.title = "Picture of the views";
    box.filter = "Picture, PNG (*.png)|*.png|Drawing, SVG (*.svg)|*.svg";
    box.saving = true;
    const filechoice choice = theplatform().askfile(box);
    if (!choice.chosen) return;
    std::filesystem::path path = choice.path;
    if (extensionof(path) != ".svg" && extensionof(path) != ".png")
        path += choice.filterindex == 2 ? ".svg" : ".png";
    const std::string extension = path.extension().string();
    const std::string base = path.replace_extension().string();
    if (askoverwrite(base, extension)) startpicture(base + extension);
}

// As wide as on the screen.
static double screenwidth(int nview) {
    const bool alone = singleview || nview != 0;
    return alone ? vieww : 2 * vieww;
}

pictureform openpicture() {
    pictureform form;
    form.path = picturepath;
    form.issvg = extensionof(picturepath) == ".svg";
    form.views.emplace_back(shownviews() == 1 ? "The view" : "All views");
    for (int v = 1; shownviews() > 1 && v <= shownviews(); ++v)
        form.views.push_back("View " + numbertext(v));
    form.view = lastchoice.content.nview < int(form.views.size()) ? lastchoice.content.nview : 0;
    form.width = fixedtext(lastchoice.width > 0 ? lastchoice.width : screenwidth(form.view), 1);
    form.dots = numbertext(lastchoice.dots);
    form.foot = lastchoice.content.foot;
    form.screencolours = lastchoice.content.screencolours;
    showsize(form);
    return form;
}

// What the fields say; a reason where they make no picture.
static std::string readfields(const pictureform& form, picturechoice& choice) {
    choice.content = {form.view, form.foot, form.screencolours};
    if (!readnumber(form.width, choice.width) ||
        (!form.issvg && !readnumber(form.dots, choice.dots)))
        return "Numerical input required";
    if (!(choice.width >= leastwidth && choice.width <= mostwidth))
        return "The width has to be between " + numbertext(leastwidth) + " and " +
               numbertext(mostwidth) + " cm";
    if (!(choice.dots >= leastdots && choice.dots <= mostdots))
        return "Dots per inch have to be between " + numbertext(leastdots) + " and " +
               numbertext(mostdots);
    const double perside = choice.dots / cmperinch;
    const double larger = std::max(choice.width, pageheight(choice.content, choice.width));
    if (!form.issvg && larger * perside > mostpixels)
        return "A side would have more than " + numbertext(mostpixels) + " pixels";
    return "";
}

void showsize(pictureform& form) {
    picturechoice choice;
    form.size.clear();
    form.message = readfields(form, choice);
    if (!form.message.empty()) return;
    const double height = pageheight(choice.content, choice.width);
    form.size = fixedtext(choice.width, 1) + " x " + fixedtext(height, 1) + " cm";
    const double pixels = choice.dots / cmperinch;
    if (!form.issvg)
        form.size += ", " + fixedtext(std::round(choice.width * pixels), 0) + " x " +
                     fixedtext(std::round(height * pixels), 0) + " pixels";
}

void writesvg(const std::string& path, const picturechoice& choice, importreport& report) {
    const double height = pageheight(choice.content, choice.width);
    svgsurface page(path, choice.width, height, theplatform().viewsurface(1));
    page.aspaper = !choice.content.screencolours;
    drawpage(page, choice.content);
    page.commit();
    report.read("Pictures");
}

bool acceptpicture(pictureform& form) {
    picturechoice choice;
    form.message = readfields(form, choice);
    if (!form.message.empty()) return false;
    lastchoice = choice;
    const reply done =
        writeforeign(form.path, form.issvg ? "Drawing (SVG)" : "Picture (PNG)",
                     [&](const std::string& path, importreport& report) {
                         if (form.issvg) return writesvg(path, choice, report);
                         writepng({path, choice.width, pageheight(choice.content, choice.width),
                                   choice.dots, !choice.content.screencolours},
                                  [&](surface& page) { drawpage(page, choice.content); });
                         report.read("Pictures");
                     });
    if (done == reply::done) theplatform().showstatus("Picture written: " + form.path);
    return true;
}
