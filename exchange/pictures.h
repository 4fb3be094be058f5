// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of the views as files, SVG and PNG, and the dialog that asks for their size.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "exchange/importreport.h"
#include "post/printdraw.h"

struct picturechoice {
    pagecontent content{0, false, false};
    double width = 0;   // centimetres; the height follows from the views
    double dots = 192;  // an inch, of PNG
};

struct pictureform {
    std::string path;
    bool issvg = false;
    std::vector<std::string> views;  // "All views", then each
    int view = 0;
    std::string width, dots;
    bool foot = false, screencolours = false;
    std::string size, message;  // size: what comes of the fields
};

// Opens the dialog for a file that is to be written.
void startpicture(const std::string& path);
// The command: asks for the file first.
void askpicture();
pictureform openpicture();
void showsize(pictureform& form);  // fills size; after each change
// Writes the file. False, with a message in the form, where a field holds no sensible value.
bool acceptpicture(pictureform& form);

void writesvg(const std::string& path, const picturechoice& choice, importreport& report);
// The window's: a PNG file of this size whose page draw fills. Throws errpathaccess, errmemory.
struct pngpage {
    std::string path;
    double width = 0, height = 0, dots = 0;  // centimetres; an inch
    bool aspaper = true;
};
extern std::function<void(const pngpage& page, const std::function<void(surface&)>& draw)> writepng;
