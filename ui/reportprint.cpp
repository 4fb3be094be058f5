// SPDX-License-Identifier: GPL-3.0-or-later
// Sheets of a report.
#include "ui/reportprint.h"

#include <QDateTime>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <algorithm>

#include "core/platform.h"
#include "core/runtime.h"

static const double largestletters = 9;  // points
static const double headroom = 2;        // lines that the sheet's own header takes

static bool beginspage(const reportlist& report, int line) {
    return line > 0 && line + 1 < report.count &&
           report.text(line + 1).contains("R E P O R T   F I L E");
}

std::vector<int> sheetsof(const reportlist& report, int room) {
    std::vector<int> sheets;
    for (int i = 0; i < report.count; ++i)
        if (sheets.empty() || i - sheets.back() >= std::max(room, 1) || beginspage(report, i))
            sheets.push_back(i);
    return sheets;
}

bool islandscape(const reportlist& report) {
    const int readable = 100;  // characters across a standing A4 sheet
    return report.longest > readable;
}

static QFont fontof(const reportlist& report, QPrinter& printer, double width) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    const QString longest(std::max(report.longest, 1), 'M');
    // Letters of a printer come in steps: the size that fits is tried, not reckoned.
    for (double size = largestletters; size > 1; size -= 0.25) {
        font.setPointSizeF(size);
        if (QFontMetricsF(font, &printer).horizontalAdvance(longest) <= width) break;
    }
    return font;
}

static void drawheader(const QString& left, const QString& right, double width, QPainter& painter,
                       const QFontMetricsF& metrics) {
    painter.drawText(QPointF(0, metrics.ascent()), left);
    painter.drawText(QPointF(width - metrics.horizontalAdvance(right), metrics.ascent()), right);
    const double y = 1.3 * metrics.height();
    painter.drawLine(QPointF(0, y), QPointF(width, y));
}

void printsheets(const reportlist& report, QPrinter& printer, QPainter& painter) {
    const QSizeF paper = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    const QFont font = fontof(report, printer, paper.width());
    const QFontMetricsF metrics(font, &printer);
    painter.setFont(font);
    const std::vector<int> sheets =
        sheetsof(report, int(paper.height() / metrics.height() - headroom));
    const QString left =
        report.name + "   " + QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm");
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        if (i > 0) printer.newPage();
        drawheader(left, QString("Page %1 of %2").arg(i + 1).arg(sheets.size()), paper.width(),
                   painter, metrics);
        const int end = i + 1 < sheets.size() ? sheets[i + 1] : report.count;
        double y = headroom * metrics.height() + metrics.ascent();
        for (int line = sheets[i]; line < end; ++line, y += metrics.height())
            painter.drawText(QPointF(0, y), report.text(line));
        if (!theplatform().progress("Printing the report", double(i + 1) / double(sheets.size())))
            throw runtimeerror{errstopped, "The printing was cancelled"};
    }
}
