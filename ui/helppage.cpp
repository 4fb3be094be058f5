// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the manual. Its page is our own text, so that the few forms it is written in are enough.
#include "ui/helppage.h"

#include <QPalette>
#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <algorithm>

using pattern = QRegularExpression;

static QString plaintextof(const QString& html) {
    return QTextDocumentFragment::fromHtml(html).toPlainText().simplified();
}

// A heading with its anchor, or the row of a table with the one of its first cell.
static const pattern& headings() {
    static const pattern p("<h([23]) id=\"([^\"]+)\">(.*?)</h\\1>",
                           pattern::DotMatchesEverythingOption);
    return p;
}

static const pattern& rows() {
    static const pattern p("<tr id=\"([^\"]+)\">\\s*<t[dh]>(.*?)</t[dh]>",
                           pattern::DotMatchesEverythingOption);
    return p;
}

std::vector<helpentry> contentsof(const QString& page) {
    std::vector<helpentry> found;
    for (auto all = headings().globalMatch(page); all.hasNext();) {
        const auto m = all.next();
        found.push_back({m.captured(1).toInt(), plaintextof(m.captured(3)), m.captured(2)});
    }
    return found;
}

std::vector<helpentry> indexof(const QString& page) {
    static const pattern number("^[0-9]+\\. ");
    std::vector<helpentry> found = contentsof(page);
    for (helpentry& e : found) e.title.remove(number);
    for (auto all = rows().globalMatch(page); all.hasNext();) {
        const auto m = all.next();
        found.push_back({0, plaintextof(m.captured(2)), m.captured(1)});
    }
    std::ranges::stable_sort(found, [](const helpentry& a, const helpentry& b) {
        return QString::localeAwareCompare(a.title.toLower(), b.title.toLower()) < 0;
    });
    return found;
}

bool hasanchor(const QString& page, const QString& anchor) {
    return page.contains(" id=\"" + anchor + "\"");
}

std::vector<helphit> findinpage(const QString& page, const QString& words) {
    const QStringList wanted = words.split(' ', Qt::SkipEmptyParts);
    std::vector<helphit> hits;
    if (wanted.isEmpty()) return hits;
    for (auto all = headings().globalMatch(page); all.hasNext();) {
        const auto m = all.next();
        const qsizetype end = all.hasNext() ? all.peekNext().capturedStart() : page.size();
        const QString text = plaintextof(page.mid(m.capturedStart(), end - m.capturedStart()));
        int count = 0;
        const bool whole = std::ranges::all_of(wanted, [&](const QString& word) {
            const qsizetype here = text.count(word, Qt::CaseInsensitive);
            count += int(here);
            return here > 0;
        });
        if (whole)
            hits.push_back(
                {{m.captured(1).toInt(), plaintextof(m.captured(3)), m.captured(2)}, count});
    }
    std::ranges::stable_sort(hits, {}, [](const helphit& h) { return -h.count; });
    return hits;
}

// --- the style ----------------------------------------------------------------------------------

static QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto mix = [part](int x, int y) { return int(x + part * (y - x)); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

static QString styleof(const QPalette& colours) {
    const QColor base = colours.color(QPalette::Base), text = colours.color(QPalette::Text);
    const bool dark = base.lightness() < text.lightness();
    const QString link = dark ? "#8ec5ff" : "#174f86";
    return QString(
               "body { color: %1; background-color: %2; }"
               "a { color: %3; } h1, h2, h3 { color: %3; }"
               "h2 { margin-top: 28px; } h3 { margin-top: 20px; }"
               "p, ul, ol { margin-top: 6px; margin-bottom: 6px; } li { margin-bottom: 3px; }"
               "table { border-collapse: collapse; border: 1px solid %4; margin-top: 6px; "
               "margin-bottom: 10px; }"
               "td, th { border: 1px solid %4; padding: 4px; } th { background-color: %5; }"
               "code, kbd, pre { font-family: monospace; }"
               "pre, kbd, .note { background-color: %5; }"
               ".menu, .c { font-weight: 600; }"
               ".formula { margin-left: 28px; font-family: serif; }"
               ".caption { color: %6; }")
        .arg(text.name(), base.name(), link, mixed(base, text, 0.3).name(),
             mixed(base, text, 0.09).name(), mixed(text, base, 0.25).name());
}

static void narrowpictures(QString& page, int mostwidth) {
    static const pattern width("<img width=\"(\\d+)\"");
    qsizetype from = 0;
    for (auto m = width.match(page); m.hasMatch(); m = width.match(page, from)) {
        from = m.capturedEnd();
        if (m.captured(1).toInt() > mostwidth)
            page.replace(m.capturedStart(1), m.capturedLength(1), QString::number(mostwidth));
    }
}

QString richpage(QString page, const QPalette& colours, int mostwidth) {
    static const pattern style("<style>.*</style>", pattern::DotMatchesEverythingOption);
    static const pattern row("<tr id=\"([^\"]+)\">(\\s*<t[dh]>)");
    // The list of chapters stands beside the text.
    static const pattern list("<nav>.*</nav>", pattern::DotMatchesEverythingOption);
    page.replace(style, "<style>" + styleof(colours) + "</style>");
    page.remove(list);
    page.replace(row, "<tr>\\2<a name=\"\\1\"></a>");
    narrowpictures(page, mostwidth);
    // At the whole width the borders would stand a pixel beside it.
    page.replace("<table>", "<table width=\"99%\" cellspacing=\"0\" cellpadding=\"4\">");
    return page;
}
