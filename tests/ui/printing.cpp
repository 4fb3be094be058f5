// SPDX-License-Identifier: GPL-3.0-or-later
// The end of a print job: a PDF file takes the place of the former one when it is whole.
#include "ui/printing.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include "core/runtime.h"
#include "ui/qtplatform.h"
#include "ui/reportprint.h"

static QByteArray contentof(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(PrintJob, KeepsTheFormerFileUntilTheNewOneIsWhole) {
    const QTemporaryDir room;
    const QString path = room.path() + "/page.pdf";
    QFile former(path);
    ASSERT_TRUE(former.open(QIODevice::WriteOnly));
    former.write("former");
    former.close();
    setplatform(&theqtplatform());
    theqtplatform().scripted = true;
    const auto print = [&](const std::function<void()>& half) {
        theqtplatform().filequeue.push_back(path.toStdString());
        printby("page", [&](QPrinter&, QPainter& painter) {
            painter.drawText(100, 100, "first line");
            half();
        });
    };
    struct {
        const char* name;
        int fault;
        const char* message;
    } const cases[] = {
        {"cancelled", errstopped, ""},
        {"fails", errsubscript, "There was a problem printing to your printer."},
    };
    for (const auto& c : cases) {
        theqtplatform().lastmessage.clear();
        print([&] { throw runtimeerror{c.fault, "half a page"}; });
        EXPECT_EQ(contentof(path), "former") << c.name;
        EXPECT_EQ(theqtplatform().lastmessage, c.message) << c.name;
    }
    print([] {});
    EXPECT_TRUE(contentof(path).startsWith("%PDF"));
    EXPECT_EQ(QDir(room.path()).entryList(QDir::Files), QStringList{"page.pdf"});
}

// Heads of the report's own pages begin sheets; a sheet that is full goes on on the next; a line of
// 130 characters turns paper that stands.
TEST(PrintJob, AReportHasItsSheetsAndFitsThem) {
    const auto text = [](int line) {
        return line == 31 || line == 60 ? QString("  K A L   R E P O R T   F I L E  Page Number")
                                        : QString(line == 8 ? 130 : 20, 'x');
    };
    const reportlist report{"job.rpt", 90, 130, text};
    EXPECT_EQ(sheetsof(report, 25), (std::vector<int>{0, 25, 30, 55, 59, 84}));
    EXPECT_EQ(sheetsof(report, 0).size(), 90u);
    const QTemporaryDir room;
    setplatform(&theqtplatform());
    theqtplatform().scripted = true;
    double overfull = 0;
    const QString path = room.path() + "/report.pdf";
    theqtplatform().filequeue.push_back(path.toStdString());
    const auto print = [&](QPrinter& printer, QPainter& painter) {
        printsheets(report, printer, painter);
        overfull = QFontMetricsF(painter.font(), &printer).horizontalAdvance(text(8)) -
                   printer.pageLayout().paintRectPixels(printer.resolution()).width();
    };
    printby("report", print, islandscape(report));
    EXPECT_TRUE(contentof(path).contains("/MediaBox [0 0 842")) << "the sheet lies";
    EXPECT_EQ(contentof(path).count("/Type /Page\n"), int(sheetsof(report, 60).size()));
    EXPECT_LE(overfull, 0);
}
