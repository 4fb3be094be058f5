// SPDX-License-Identifier: GPL-3.0-or-later
// Where an illustrated report goes: pages of a PDF file, or one HTML file. Its parts write to this
// and know no more. A table may have any number of rows: each goes out as it comes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "view/surface.h"

struct bookcolumn {
    std::string caption;
    bool number = true;  // stands at the right edge
    double width = 1;    // share of the page's, beside the others'
};
using bookdraw = std::function<void(surface&)>;

const double bookpicturewidth = 16.5, bookpictureheight = 10;  // centimetres

struct booksink {
    virtual ~booksink() = default;
    virtual void cover(const std::string& title, const std::vector<std::string>& lines,
                       const bookdraw& draw) = 0;
    virtual void contents() = 0;
    // Begin what follows; the key is that of the part in the contents.
    virtual void chapter(const std::string& caption) = 0;
    virtual void part(const std::string& key, const std::string& caption) = 0;
    virtual void text(const std::string& paragraph, bool warning = false) = 0;
    // rows: about so many that should stand on one page, 0 for any number.
    virtual void begintable(const std::string& caption, const std::vector<bookcolumn>& columns,
                            int rows = 0) = 0;
    virtual void row(const std::vector<std::string>& cells, bool stressed = false) = 0;
    virtual void endtable() = 0;
    virtual void picture(const std::string& caption, const bookdraw& draw) = 0;
};
