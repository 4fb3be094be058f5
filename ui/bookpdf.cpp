// SPDX-License-Identifier: GPL-3.0-or-later
// Pages of the illustrated report. They are laid out twice: first without ink, for the numbers of
// the pages in the contents and at the foot; then each page goes to the file as it is full.
#include "ui/bookpdf.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <cmath>
#include <optional>
#include <utility>

#include "core/besidefile.h"
#include "core/runtime.h"
#include "post/book.h"
#include "ui/controls.h"
#include "ui/printsurface.h"

static const int dotsperinch = 300;
static const double cmperinch = 2.54, dots = dotsperinch / cmperinch;  // a centimetre

// Centimetres of an A4 page.
static const double pagewidth = 21, pageheight = 29.7, leftmargin = 2, rightmargin = 2,
                    topmargin = 2.2, bottommargin = 2;
static const double room = pagewidth - leftmargin - rightmargin;
static const double lastline = pageheight - bottommargin;
static const double titlesize = 24, chaptersize = 16, partsize = 12, textsize = 9.5, tablesize = 8,
                    widetablesize = 6, footsize = 8;  // points
static const std::size_t widecolumns = 9;             // from which a table has small letters
static const int contentlines = 44;                   // on a page

namespace {

struct contentline {
    QString caption;
    bool chapter;
    int page;
};

class pdfbook : public booksink {
  public:
    // Without a painter the pages are counted alone.
    pdfbook(QPdfWriter& w, QPainter* p, const bookchoice& b, const pdfbook* counted)
        : writer(w), painter(p), title(qtext(booktitle(b))) {
        if (counted) {
            const int lines = int(counted->list.size());
            const int more = counted->haslist ? std::max(0, (lines - 1) / contentlines) : 0;
            known = counted->list;
            for (contentline& line : known) line.page += more;
            allpages = counted->page + more;
        }
        beginpage();
    }

    void cover(const std::string& caption, const std::vector<std::string>& lines,
               const bookdraw& draw) override {
        y = 4.5;
        setfont(titlesize, true);
        paragraph(qtext(caption), 0);
        y += 0.8;
        setfont(textsize + 1.5);
        for (const std::string& line : lines) paragraph(qtext(line), 0.12);
        y += 0.8;
        drawpicture(draw);
        fresh = false;
    }
    void contents() override {
        if (!fresh) nextpage();
        haslist = true;
        setfont(chaptersize, true);
        paragraph("Contents", 0.4);
        setfont(textsize);
        for (std::size_t i = 0; i < known.size(); ++i) {
            if (i > 0 && i % std::size_t(contentlines) == 0) nextpage();
            const contentline& line = known[i];
            setfont(textsize, line.chapter);
            const double left = line.chapter ? 0 : 0.6, tall = lineheight();
            drawtext(left, line.caption);
            const QString number = QString::number(line.page);
            drawtext(room - widthof(number), number);
            y += tall;
        }
        fresh = false;
    }
    void chapter(const std::string& caption) override {
        if (!fresh) nextpage();
        list.push_back({qtext(caption), true, page});
        setfont(chaptersize, true);
        paragraph(qtext(caption), 0.1);
        rule(0.06, QColor(43, 90, 140));
        y += 0.2;
        fresh = false;
    }
    // Its heading waits for what follows: both stand on one page.
    void part(const std::string&, const std::string& caption) override { pending = qtext(caption); }
    void text(const std::string& words, bool warning) override {
        startpart(1);
        setfont(textsize);
        ink = warning ? QColor(176, 0, 32) : QColor(26, 26, 26);
        paragraph(qtext(words), 0.2);
        ink = QColor(26, 26, 26);
    }
    void begintable(const std::string& caption, const std::vector<bookcolumn>& all,
                    int rows) override {
        const double heading = 2.2, row = 0.5, most = 18;  // centimetres
        const double whole = heading + row * std::max(rows - 2, 0);
        startpart(whole <= most ? whole : heading);
        if (!caption.empty()) {
            setfont(textsize, true);
            paragraph(qtext(caption), 0.1);
        }
        columns = all;
        double sum = 0;
        for (const bookcolumn& c : columns) sum += c.width;
        edges.assign(1, 0);
        for (const bookcolumn& c : columns) edges.push_back(edges.back() + c.width / sum * room);
        head();
    }
    void row(const std::vector<std::string>& cells, bool stressed) override {
        ink = stressed ? QColor(176, 0, 32) : QColor(26, 26, 26);
        line(cells);
        ink = QColor(26, 26, 26);
    }
    void endtable() override { y += 0.4; }
    void picture(const std::string& caption, const bookdraw& draw) override {
        startpart(bookpictureheight + 0.9);
        drawpicture(draw);
        setfont(textsize - 0.5);
        paragraph(qtext(caption), 0.4);
    }

    int page = 0;
    std::vector<contentline> list;
    bool haslist = false;

  private:
    // Room for so many centimetres, and the heading of the part that begins with them.
    void startpart(double height) {
        const double heading = pending.isEmpty() ? 0 : 1.3;
        if (y + heading + height > lastline) nextpage();
        if (pending.isEmpty()) return;
        const QString caption = std::exchange(pending, QString());
        list.push_back({caption, false, page});
        y += 0.4;
        setfont(partsize, true);
        paragraph(caption, 0.2);
        fresh = false;
    }
    void setfont(double points, bool bold = false) {
        if (points == size && bold == isbold && metrics) return;
        size = points;
        isbold = bold;
        QFont font("DejaVu Sans");
        font.setStyleHint(QFont::SansSerif);
        font.setPointSizeF(points);
        font.setBold(bold);
        metrics.emplace(font, &writer);
        if (painter) painter->setFont(font);
    }
    double lineheight() const { return metrics->height() / dots; }
    double widthof(const QString& words) const { return metrics->horizontalAdvance(words) / dots; }
    // At so many centimetres from the left margin, its line's top at y.
    void drawtext(double left, const QString& words) {
        if (!painter) return;
        painter->setPen(ink);
        painter->drawText(QPointF((leftmargin + left) * dots, y * dots + metrics->ascent()), words);
    }
    void rule(double thick, const QColor& c) {
        if (painter)
            painter->fillRect(QRectF(leftmargin * dots, y * dots, room * dots, thick * dots), c);
        y += thick;
    }
    // Words in lines of a width.
    std::vector<QString> linesof(const QString& words, double width) const {
        std::vector<QString> lines;
        QString line;
        for (const QString& word : words.split(' ', Qt::SkipEmptyParts)) {
            const QString longer = line.isEmpty() ? word : line + ' ' + word;
            if (!line.isEmpty() && widthof(longer) > width) {
                lines.push_back(line);
                line = word;
            } else {
                line = longer;
            }
            while (line.size() > 1 && widthof(line) > width) {  // a word longer than the line
                qsizetype fits = line.size() - 1;
                while (fits > 1 && widthof(line.left(fits)) > width) fits -= 1 + fits / 16;
                lines.push_back(line.left(std::max<qsizetype>(fits, 1)));
                line = line.mid(std::max<qsizetype>(fits, 1));
            }
        }
        lines.push_back(line);
        return lines;
    }
    void paragraph(const QString& words, double below) {
        const double points = size;
        const bool bold = isbold;
        for (const QString& line : linesof(words, room)) {
            if (y + lineheight() > lastline) {
                nextpage();
                setfont(points, bold);
            }
            drawtext(0, line);
            y += lineheight();
        }
        y += below;
    }
    double tableletters() const { return columns.size() > widecolumns ? widetablesize : tablesize; }
    void head() {
        setfont(tableletters(), true);
        std::vector<std::string> captions;
        for (const bookcolumn& column : columns) captions.push_back(column.caption);
        cellrows rows;
        const std::size_t tall = wrapcells(captions, rows);
        drawcells(rows);
        y += double(tall) * lineheight() + 0.05;
        rule(0.03, QColor(80, 80, 80));
        setfont(tableletters());
    }
    void cell(std::size_t i, const QString& words, bool atright, int under) {
        const double pad = 0.06, width = edges[i + 1] - edges[i] - 2 * pad;
        const double before = y;
        y += under * lineheight();
        drawtext(edges[i] + pad + (atright ? width - widthof(words) : 0), words);
        y = before;
    }
    using cellrows = std::vector<std::vector<QString>>;  // the lines of each cell
    // How many lines the tallest has.
    std::size_t wrapcells(const std::vector<std::string>& cells, cellrows& rows) const {
        std::size_t tall = 1;
        rows.clear();
        for (std::size_t i = 0; i < cells.size() && i < columns.size(); ++i) {
            const QString words = qtext(cells[i]);
            const double width = edges[i + 1] - edges[i] - 0.12;
            // Numbers fit, and are many.
            const bool plain = cells[i].size() < 8 || widthof(words) <= width;
            rows.push_back(plain ? std::vector<QString>{words} : linesof(words, width));
            tall = std::max(tall, rows.back().size());
        }
        return tall;
    }
    void drawcells(const cellrows& rows) {
        for (std::size_t i = 0; painter && i < rows.size(); ++i)
            for (std::size_t k = 0; k < rows[i].size(); ++k)
                cell(i, rows[i][k], columns[i].number, int(k));
    }
    void line(const std::vector<std::string>& cells) {
        const double height = double(wrapcells(cells, wrapped)) * lineheight() + 0.06;
        if (y + height > lastline) {
            nextpage();
            head();
        }
        drawcells(wrapped);
        y += height - 0.01;
        rule(0.01, QColor(215, 215, 215));
    }
    void drawpicture(const bookdraw& draw) {
        if (painter) {
            const QRectF area((leftmargin + (room - bookpicturewidth) / 2) * dots, y * dots,
                              bookpicturewidth * dots, bookpictureheight * dots);
            painter->save();
            printsurface surface;
            surface.begin(painter, area, dots);
            draw(surface);
            surface.end();
            painter->setPen(QPen(QColor(200, 200, 200), 0.02 * dots));
            painter->setBrush(Qt::NoBrush);
            painter->drawRect(area);
            painter->restore();
            metrics.reset();
        }
        y += bookpictureheight + 0.1;
        fresh = false;
    }
    void beginpage() {
        ++page;
        y = topmargin;
        fresh = true;
        if (!painter) return;
        const double before = y;
        setfont(footsize);
        ink = QColor(90, 90, 90);
        y = pageheight - 1.3;
        drawtext(0, metrics->elidedText(title, Qt::ElideRight, 12 * dots));
        const QString number = QString("Page %1 of %2").arg(page).arg(allpages);
        drawtext(room - widthof(number), number);
        ink = QColor(26, 26, 26);
        y = before;
    }
    void nextpage() {
        bookprogress();
        if (painter && !writer.newPage())
            throw runtimeerror{errdiskfull, "The report can not be written: no room on the disk?"};
        beginpage();
    }

    QString pending;  // heading of a part that has nothing yet
    QPdfWriter& writer;
    QPainter* const painter;
    const QString title;
    std::vector<contentline> known;
    int allpages = 0;
    double y = 0;  // centimetres from the top of the page
    bool fresh = true;
    double size = 0;
    bool isbold = false;
    std::optional<QFontMetricsF> metrics;
    QColor ink = QColor(26, 26, 26);
    std::vector<bookcolumn> columns;
    std::vector<double> edges;  // of the columns, from the left margin
    cellrows wrapped;
};

}  // namespace

void writepdfbook(const std::string& path) {
    const bookchoice book = thebook();
    besidefile file(path);
    {
        QPdfWriter writer(qtext(file.path()));
        writer.setResolution(dotsperinch);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setCreator("Kalvane");
        writer.setTitle(qtext(booktitle(book)));
        pdfbook counted(writer, nullptr, book, nullptr);
        writebook(counted);
        QPainter painter;
        if (!painter.begin(&writer))
            throw runtimeerror{errpathaccess, "File can not be written: " + path};
        pdfbook pages(writer, &painter, book, &counted);
        writebook(pages);
        if (!painter.end())
            throw runtimeerror{errdiskfull, "The report can not be written: no room on the disk?"};
    }
    file.replacetarget();
}

std::string pngofbook(double width, double height, const bookdraw& draw) {
    const double pixels = 150 / cmperinch;
    QImage image(int(width * pixels), int(height * pixels), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    printsurface surface;
    surface.begin(&painter, QRectF(image.rect()), pixels);
    draw(surface);
    surface.end();
    painter.end();
    QBuffer bytes;
    image.save(&bytes, "PNG");
    return bytes.data().toStdString();
}
