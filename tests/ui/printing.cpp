// SPDX-License-Identifier: GPL-3.0-or-later
// The end of a print job: a PDF file takes the place of the former one when it is whole.
#include "ui/printing.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include "core/runtime.h"
#include "ui/qtplatform.h"

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
    setdoor(&theplatform());
    theplatform().scripted = true;
    const auto print = [&](const std::function<void()>& half) {
        theplatform().filequeue.push_back(path.toStdString());
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
        theplatform().lastmessage.clear();
        print([&] { throw runtimeerror{c.fault, "half a page"}; });
        EXPECT_EQ(contentof(path), "former") << c.name;
        EXPECT_EQ(theplatform().lastmessage, c.message) << c.name;
    }
    print([] {});
    EXPECT_TRUE(contentof(path).startsWith("%PDF"));
    EXPECT_EQ(QDir(room.path()).entryList(QDir::Files), QStringList{"page.pdf"});
}
