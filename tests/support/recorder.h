// SPDX-License-Identifier: GPL-3.0-or-later
// What stands in for the window in tests: a platform that answers from a queue and keeps every
// text, and a surface that keeps the list of drawing operations.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "core/model.h"
#include "core/platform.h"
#include "core/session.h"
#include "core/views.h"
#include "view/surface.h"

// Every operation is a line of text: "line 1.00 4.00 9.00 4.00 #000000".
class recordsurface : public surface {
  public:
    void clear(colour background) override;
    void toplane(planes p) override { plane = p; }
    void point(double x, double y, colour c) override;
    void line(double x1, double y1, double x2, double y2, colour c) override;
    void box(double x1, double y1, double x2, double y2, colour c) override;
    void circle(double x, double y, double radius, colour c) override;
    void polygon(const point2* p, int n, colour edge) override;
    void text(std::string_view utf8) override;
    void picture(std::string_view name, double x, double y) override;
    double textwidth(std::string_view utf8) override { return 0.2 * double(utf8.size()); }
    double textheight() override { return 0.4; }
    double width() const override { return framewidth; }
    double height() const override { return frameheight; }
    void toframe(double left, double top, double width, double height) override;
    double pixpercm() const override { return 40; }

    int count(const std::string& start) const;  // operations that begin with this text
    std::vector<std::string> operations;
    planes plane = planes::model;
    double framewidth = 20, frameheight = 10;
};

// Paper: nothing that was drawn goes away.
class recordpage : public recordsurface {
  public:
    void clear(colour) override {}
};

class recorder : public platform {
  public:
    recorder() { setplatform(this); }
    ~recorder() override { setplatform(nullptr); }
    answers show(const messagebox& box) override;
    filechoice askfile(const filebox& box) override;
    void showtitle(const std::string& text) override { title = text; }
    void showstatus(const std::string& text) override { status = text; }
    void showdialog(const std::string& name) override { dialogs.push_back(name); }
    void endprogram() override { ended = true; }
    surface* legendsurface() override { return &legend; }
    surface* viewsurface(int nview) override { return &views[std::size_t(nview - 1)]; }
    surface* printsurface() override { return &page; }
    recordsurface legend;
    twipbox workarea() override { return {0, 600, 17080, 8002}; }
    void viewsize(int, double& width, double& height) override { width = 20, height = 10; }
    void startprocess(const std::string&, const std::vector<std::string>&,
                      const std::string&) override {
        if (onprocess) onprocess();
    }
    bool processruns() override { return running; }
    void killprocess() override { running = false; }
    int processcode() override { return exitcode; }
    printstart startprint() override { return printing; }
    bool endprint(bool whole) override {
        ++pages;
        return printed && whole;
    }
    bool progress(const std::string&, double, bool) override { return !cancelled; }

    bool told(const std::string& text) const;  // a message held exactly this text
    bool toldpart(const std::string& part) const;

    std::vector<messagebox> messages;
    std::deque<answers> answerqueue;
    std::deque<filechoice> filequeue;
    std::vector<filebox> fileboxes;
    std::vector<std::string> dialogs;
    std::string title, status;
    std::array<recordsurface, 4> views;
    recordpage page;
    printstart printing = printstart::begun;  // what the print dialog comes to
    bool printed = true;
    int pages = 0;
    std::function<void()> onprocess;  // what the started program does
    int exitcode = 0;
    bool running = false;  // the process after onprocess
    bool cancelled = false, ended = false;
};

// A directory of its own for one test, removed at its end; in it a started session with the
// project's catalogue.
class sessionroom {
  public:
    sessionroom();
    ~sessionroom();
    std::string file(const std::string& name) const { return folder + "/" + name; }
    std::string folder;
    recorder platform;
};

// Contents of a file, and writing one.
std::string contentof(const std::string& path);
void writefile(const std::string& path, const std::string& content);
// The project's source directory.
std::string sourcedir();
// For random work: the seed of the shuffled run, by which the whole run is repeated
// (--gtest_shuffle --gtest_random_seed=N), or any. Trace it, so that a failure tells it.
unsigned randomseed();
// Appends to the model; returns the number.
int addnode(float x, float y, float z);
int addelement(int type, std::vector<int> corners, int group = 1);
