// SPDX-License-Identifier: GPL-3.0-or-later
// The HTML file.
#include "post/bookhtml.h"

std::function<std::string(double width, double height, const bookdraw& draw)> bookpng;

static const char* const style = R"(
body { font: 10pt/1.4 "DejaVu Sans", Arial, sans-serif; color: #1a1a1a; background: #fff;
  max-width: 19cm; margin: 1cm auto; padding: 0 0.5cm; }
h1 { font-size: 22pt; margin: 0.2em 0; } h2 { font-size: 15pt; border-bottom: 2px solid #2b5a8c;
  margin-top: 1.6em; break-before: page; } h3 { font-size: 12pt; margin: 1.2em 0 0.4em; }
section.cover { min-height: 22cm; } section.cover p { margin: 0.2em 0; }
table { border-collapse: collapse; width: 100%; margin: 0.3em 0 1em; font-size: 8.5pt; }
caption { text-align: left; font-weight: bold; padding: 0.3em 0; }
thead { display: table-header-group; } tr { break-inside: avoid; }
th { border-bottom: 1.5px solid #555; text-align: left; padding: 2px 5px; }
td { border-bottom: 1px solid #ddd; padding: 1px 5px; overflow-wrap: anywhere; }
th.n, td.n { text-align: right; white-space: nowrap; }
figure { margin: 0.6em 0 1.2em; break-inside: avoid; } img { width: 100%; border: 1px solid #ccc; }
figcaption { font-size: 9pt; color: #333; } .warning, tr.warning td { color: #b00020; }
nav ul { list-style: none; padding-left: 1em; } nav a { color: inherit; }
@page { size: A4; margin: 1.8cm 1.5cm; } @media print { body { margin: 0; padding: 0;
  max-width: none; } nav a { text-decoration: none; } h2:first-of-type { break-before: auto; } }
)";

static std::string escaped(const std::string& text) {
    std::string html;
    for (const char c : text) {
        if (c == '&')
            html += "&amp;";
        else if (c == '<')
            html += "&lt;";
        else if (c == '>')
            html += "&gt;";
        else if (c == '"')
            html += "&quot;";
        else
            html += c;
    }
    return html;
}

// RFC 4648.
static std::string base64(const std::string& bytes) {
    static const char letters[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned three = 0;
        for (std::size_t k = 0; k < 3; ++k)
            three = three << 8 | (i + k < bytes.size() ? (unsigned char)bytes[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k > bytes.size() ? '=' : letters[three >> (18 - 6 * k) & 63];
    }
    return text;
}

htmlbook::htmlbook(const std::string& path, const bookchoice& b) : out(path), book(b) {
    line("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">");
    line("<title>" + escaped(booktitle(book)) + "</title>");
    line("<style>" + std::string(style) + "</style></head><body>");
}

void htmlbook::commit() {
    line("</body></html>");
    out.commit();
}

void htmlbook::line(const std::string& html) {
    out.raw(html).raw("\n");
}

void htmlbook::image(const std::string& alternative, const bookdraw& draw) {
    if (!bookpng) return;
    line("<img alt=\"" + escaped(alternative) + "\" src=\"data:image/png;base64," +
         base64(bookpng(bookpicturewidth, bookpictureheight, draw)) + "\">");
}

void htmlbook::cover(const std::string& title, const std::vector<std::string>& lines,
                     const bookdraw& draw) {
    line("<section class=\"cover\"><h1>" + escaped(title) + "</h1>");
    for (const std::string& one : lines) line("<p>" + escaped(one) + "</p>");
    line("<figure>");
    image(title, draw);
    line("</figure></section>");
}

void htmlbook::contents() {
    line("<nav><h2>Contents</h2><ul>");
    const char* chapter = "";
    for (const bookpart& p : bookparts()) {
        if (!p.write || !ispartwanted(book, p.key)) continue;
        if (std::string(chapter) != p.chapter)
            line("<li><b>" + escaped(chapter = p.chapter) + "</b></li>");
        line(std::string("<li>&emsp;<a href=\"#") + p.key + "\">" + escaped(p.caption) +
             "</a></li>");
    }
    if (!book.views.empty()) line("<li><a href=\"#views\"><b>Chosen pictures</b></a></li>");
    line("</ul></nav>");
}

void htmlbook::chapter(const std::string& caption) {
    line("<h2>" + escaped(caption) + "</h2>");
}

void htmlbook::part(const std::string& key, const std::string& caption) {
    line("<h3 id=\"" + key + "\">" + escaped(caption) + "</h3>");
}

void htmlbook::text(const std::string& paragraph, bool warning) {
    line(std::string("<p") + (warning ? " class=\"warning\">" : ">") + escaped(paragraph) + "</p>");
}

void htmlbook::begintable(const std::string& caption, const std::vector<bookcolumn>& columns, int) {
    table = columns;
    line("<table>");
    if (!caption.empty()) line("<caption>" + escaped(caption) + "</caption>");
    std::string head = "<thead><tr>";
    for (const bookcolumn& c : columns)
        head += (c.number ? "<th class=\"n\">" : "<th>") + escaped(c.caption) + "</th>";
    line(head + "</tr></thead><tbody>");
}

void htmlbook::row(const std::vector<std::string>& cells, bool stressed) {
    std::string html = stressed ? "<tr class=\"warning\">" : "<tr>";
    for (std::size_t i = 0; i < table.size(); ++i)
        html += (table[i].number ? "<td class=\"n\">" : "<td>") +
                (i < cells.size() ? escaped(cells[i]) : "") + "</td>";
    line(html + "</tr>");
}

void htmlbook::endtable() {
    line("</tbody></table>");
}

void htmlbook::picture(const std::string& caption, const bookdraw& draw) {
    line("<figure>");
    image(caption, draw);
    line("<figcaption>" + escaped(caption) + "</figcaption></figure>");
}

void writehtmlbook(const std::string& path) {
    htmlbook html(path, thebook());
    writebook(html);
    html.commit();
}
