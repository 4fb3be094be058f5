// SPDX-License-Identifier: GPL-3.0-or-later
// The illustrated report as one HTML file: its pictures are inside, it prints on plain paper, and
// its rows go to the disk as they come.
#pragma once

#include "core/textfile.h"
#include "post/book.h"

// The window's: a picture of this size in centimetres as the bytes of a PNG file.
extern std::function<std::string(double width, double height, const bookdraw& draw)> bookpng;

class htmlbook : public booksink {
  public:
    // Throws errpathaccess.
    htmlbook(const std::string& path, const bookchoice& book);
    void commit();  // takes the file's place. Throws errdiskfull, errpathaccess

    void cover(const std::string& title, const std::vector<std::string>& lines,
               const bookdraw& draw) override;
    void contents() override;
    void chapter(const std::string& caption) override;
    void part(const std::string& key, const std::string& caption) override;
    void text(const std::string& paragraph, bool warning) override;
    void begintable(const std::string& caption, const std::vector<bookcolumn>& columns,
                    int rows) override;
    void row(const std::vector<std::string>& cells, bool stressed) override;
    void endtable() override;
    void picture(const std::string& caption, const bookdraw& draw) override;

  private:
    void line(const std::string& html);
    void image(const std::string& alternative, const bookdraw& draw);
    textout out;
    bookchoice book;
    std::vector<bookcolumn> table;
};

// Asks for nothing. A fault is thrown, and the former file stands.
void writehtmlbook(const std::string& path);
