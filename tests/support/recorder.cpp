// SPDX-License-Identifier: GPL-3.0-or-later
// The recording platform and surface.
#include "tests/support/recorder.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "files/solverunits.h"
#include "post/compare.h"
#include "post/contour.h"
#include "post/diagrams.h"
#include "post/drawcontour.h"
#include "post/linelabels.h"
#include "post/postproces.h"
#include "post/source.h"
#include "post/stressfile.h"
#include "view/drawelems.h"
#include "view/moddraw.h"
#include "view/symbols.h"
#include "view/symbolstyle.h"

namespace fs = std::filesystem;

static std::string coloured(colour c) {
    char text[16];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", redof(c), greenof(c), blueof(c));
    return text;
}

template <typename... T>
static std::string operation(const char* form, T... values) {
    char text[200];
    std::snprintf(text, sizeof text, form, values...);
    return text;
}

void recordsurface::clear(colour background) {
    operations.clear();
    operations.push_back("clear " + coloured(background));
}

void recordsurface::point(double x, double y, colour c) {
    operations.push_back(operation("point %.2f %.2f ", x, y) + coloured(c));
    moveto(x, y);
}

void recordsurface::line(double x1, double y1, double x2, double y2, colour c) {
    operations.push_back(operation("line %.2f %.2f %.2f %.2f ", x1, y1, x2, y2) + coloured(c) +
                         (drawwidth == 1 ? "" : " w" + std::to_string(drawwidth)) +
                         (drawstyle == pens::dotted ? " dotted" : ""));
    moveto(x2, y2);
}

void recordsurface::box(double x1, double y1, double x2, double y2, colour c) {
    operations.push_back(operation("box %.2f %.2f %.2f %.2f ", x1, y1, x2, y2) + coloured(c));
}

void recordsurface::circle(double x, double y, double radius, colour c) {
    operations.push_back(operation("circle %.2f %.2f %.3f ", x, y, radius) + coloured(c));
}

void recordsurface::polygon(const point2* p, int n, colour edge) {
    std::string text = "polygon";
    for (int i = 0; i < n; ++i) text += operation(" %.2f %.2f", p[i].x, p[i].y);
    operations.push_back(text + " " + coloured(fillcolor) + " " + coloured(edge));
}

void recordsurface::text(std::string_view utf8) {
    operations.push_back(operation("text %.2f %.2f ", currentx, currenty) + std::string(utf8));
}

void recordsurface::picture(std::string_view name, double x, double y) {
    operations.push_back(operation("picture %.2f %.2f ", x, y) + std::string(name));
}

void recordsurface::toframe(double left, double top, double width, double height) {
    operations.push_back(operation("frame %.2f %.2f %.2f %.2f", left, top, width, height));
    framewidth = width;
    frameheight = height;
}

int recordsurface::count(const std::string& start) const {
    return int(std::ranges::count_if(operations, [&](auto& o) { return o.starts_with(start); }));
}

template <typename Item>
static Item nextof(std::deque<Item>& queue, const Item& otherwise) {
    if (queue.empty()) return otherwise;
    const Item next = queue.front();
    queue.pop_front();
    return next;
}

answers recorder::show(const messagebox& box) {
    messages.push_back(box);
    if (box.set == buttons::ok) return answers::ok;
    return nextof(answerqueue, box.set == buttons::yesno ? answers::no : answers::cancel);
}

filechoice recorder::askfile(const filebox& box) {
    fileboxes.push_back(box);
    return nextof(filequeue, filechoice());
}

bool recorder::told(const std::string& text) const {
    return std::ranges::any_of(messages, [&](auto& m) { return m.text == text; });
}

bool recorder::toldpart(const std::string& part) const {
    return std::ranges::any_of(messages, [&](auto& m) { return m.text.find(part) != m.text.npos; });
}

std::string sourcedir() {
    const char* dir = std::getenv("KALVANE_SOURCE");
    return dir ? dir : KALVANE_SOURCE_DIR;
}

// The choices about results as they are when the program begins.
static void plainresults() {
    retryresults();
    endcomparison();
    shownsource = {};
    stresscomp = 13;
    contourdata = dispcontour = postset = 0;
    contourfilled = postgroup = 1;
    indexautoscale = true;
    scalemax = scalemin = 0;
    stressaverage = lineelstress = stressglobal = 0;
    stresslocal = markextremes = valueatpointer = ghoston = linelabelson = false;
    fieldread = true;
    fieldismode = fieldisnoise = false;
    diagram = {};
    menupostItem(contourplot).checked = menupostItem(elementstress).checked = false;
}

sessionroom::sessionroom() {
    static int number = 0;
    folder = fs::temp_directory_path() /
             ("kalvane-test-" + std::to_string(::getpid()) + "-" + std::to_string(++number));
    fs::create_directories(folder);
    for (const char* name : {"ELTYP.DAT", "ELDES.DAT"})
        fs::copy_file(sourcedir() + "/data/" + name, folder + "/" + name);
    writefile(file("decmem.DAT"), "5000\r\n5000\r\n5000\r\n50\r\n2000\r\n200\r\n4\r\n");
    initsymbols();
    wirelayers();
    start(folder);
    readsolverunits();
    notesaved();
    symbolsdrawn = {};
    previewbuffers = false;  // what the test before may have left
    plainresults();
    commenttext.clear();
    commentvisible = false;
    vieww = 20;
    viewh = 10;
}

sessionroom::~sessionroom() {
    std::error_code ec;
    fs::current_path("/", ec);
    fs::remove_all(folder, ec);
}

std::string contentof(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writefile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

unsigned randomseed() {
    const int shuffled = testing::UnitTest::GetInstance()->random_seed();
    return shuffled != 0 ? unsigned(shuffled) : std::random_device()();
}

int addnode(float x, float y, float z) {
    const int n = nnodes() + 1;
    nodes(0, n, 0) = x;
    nodes(0, n, 1) = y;
    nodes(0, n, 2) = z;
    nodes(0, 0, 0) = float(n);
    return n;
}

int addelement(int type, std::vector<int> corners, int group) {
    const int e = nelems() + 1;
    elems(e, 0) = float(type);
    for (std::size_t k = 0; k < corners.size(); ++k) elems(e, long(k) + 1) = float(corners[k]);
    egroup(e) = group;
    elems(0, 0) = float(e);
    return e;
}
