// SPDX-License-Identifier: GPL-3.0-or-later
// The manual against the program: what it names exists, what exists has its place in it, and the
// help window follows every link.
#include <QLineEdit>
#include <QListWidget>
#include <QPalette>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTreeWidget>
#include <cmath>
#include <filesystem>
#include <set>

#include "core/session.h"
#include "tests/ui/playroom.h"
#include "ui/actions.h"
#include "ui/controlkinds.h"
#include "ui/dialogs.h"
#include "ui/helppage.h"
#include "ui/helpwindow.h"
#include "ui/mainwindow.h"
#include "ui/menus.h"
#include "ui/qtplatform.h"
#include "ui/script.h"

namespace fs = std::filesystem;

static QString manual() {
    return QString::fromStdString(contentof(sourcedir() + "/data/manual.htm"));
}

// What the first bracket of an expression takes, everywhere in a text.
static QStringList allof(const QString& text, const char* expression) {
    QStringList found;
    static std::map<std::string, QRegularExpression> known;
    auto& pattern = known.try_emplace(expression, QRegularExpression(expression)).first->second;
    for (auto all = pattern.globalMatch(text); all.hasNext();) found << all.next().captured(1);
    return found;
}

static QString plainof(const QString& html) {
    QTextDocument text;
    text.setHtml(html);
    return text.toPlainText().simplified();
}

// A session with the window, and the manual where the program looks for it.
struct helproom {
    helproom() {
        fs::copy(sourcedir() + "/data/manual.htm", appdir + "/manual.htm");
        setplatform(&theqtplatform());
        theqtplatform().scripted = true;
        wiredialogs();
        window.emplace();
        window->ending = true;
        window->show();
    }
    sessionroom room;
    std::optional<mainwindow> window;
};

static QDialog* helpwindownow() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == "HelpWindow" && w->isVisible()) return qobject_cast<QDialog*>(w);
    return nullptr;
}

TEST(Manual, EveryItemAndWindowHasItsPlace) {
    const helproom room;
    const QString page = manual();
    for (const action& row : actions()) {
        if (*row.caption == 0 || *row.menu == 0) continue;
        const QString id = QString::fromStdString("do-" + row.name);
        const QStringList cell =
            allof(page, ("<tr id=\"" + QRegularExpression::escape(id) + "\"><td>([^<]*)</td>")
                            .toStdString()
                            .c_str());
        // Without a row of its own F1 leads to its chapter.
        EXPECT_TRUE(!cell.empty() || hasanchor(page, row.topic)) << row.name;
        if (cell.empty()) continue;
        EXPECT_EQ(plainof(cell[0]), plaintext(row.caption).trimmed()) << row.name;
    }
    for (const QString& name : allof(page, " id=\"do-([^\"]+)\""))
        EXPECT_TRUE(findaction(name.toStdString())) << name.toStdString() << " is no item any more";
    std::vector<std::string> windows = dialognames();
    for (const char* more : {"Sectiontool", "reportviewer", "printpreview", "printsetup",
                             "fontdialog", "colordialog", "colorcostum", "HelpWindow"})
        windows.push_back(more);
    for (const std::string& name : windows)
        EXPECT_TRUE(hasanchor(page, QString::fromStdString("window-" + name)))
            << "add a row with id=\"window-" << name << "\" to Windows of data/manual.htm";
}

TEST(Manual, LinksAndPicturesAreThere) {
    const QString page = manual();
    const QStringList ids = allof(page, " id=\"([^\"]+)\"");
    EXPECT_EQ(std::set<QString>(ids.begin(), ids.end()).size(), std::size_t(ids.size()))
        << "an anchor stands twice";
    for (const QString& link : allof(page, "href=\"([^\"]+)\"")) {
        ASSERT_TRUE(link.startsWith('#')) << link.toStdString();
        EXPECT_TRUE(hasanchor(page, link.mid(1))) << link.toStdString();
    }
    const QString script = QString::fromStdString(contentof(sourcedir() + "/docs/pictures.kds"));
    const QStringList shown = allof(page, "<img width=\"[0-9]+\" src=\"([^\"]+)\"");
    EXPECT_EQ(page.count("<img"), shown.size()) << "each tells its width";
    for (const QString& file : shown) {
        EXPECT_TRUE(fs::exists(sourcedir() + "/data/" + file.toStdString())) << file.toStdString();
        EXPECT_TRUE(script.contains(file)) << "no script makes " << file.toStdString();
    }
    for (const auto& entry : fs::directory_iterator(sourcedir() + "/data/manual"))
        EXPECT_TRUE(page.contains(QString::fromStdString(entry.path().filename().string())))
            << entry.path() << " is shown nowhere";
    const auto chapters = contentsof(page);
    for (const helpentry& e : chapters)
        EXPECT_TRUE(e.level == 3 || page.contains("<li><a href=\"#" + e.anchor + "\">"))
            << e.title.toStdString();
    EXPECT_GT(chapters.size(), 60u);
}

// All texts that stand in quotes in the sources of the program.
static const std::set<QString>& textsofsources() {
    static const std::set<QString> texts = [] {
        std::set<QString> found;
        for (const char* folder : {"ui", "tools", "loads", "post", "files", "edit", "core", "view"})
            for (const auto& entry : fs::directory_iterator(sourcedir() + "/" + folder)) {
                const QString source = QString::fromStdString(contentof(entry.path().string()));
                for (const QString& text : allof(source, "\"((?:[^\"\\\\\n]|\\\\.)*)\""))
                    found.insert(plaintext(text).trimmed());
            }
        return found;
    }();
    return texts;
}

TEST(Manual, CaptionsAndMenusThatItNamesExist) {
    const helproom room;
    QStringList captions = allof(manual(), "<b class=\"c\">([^<]+)</b>");
    captions.removeDuplicates();
    EXPECT_GT(captions.size(), 25);
    for (const QString& caption : captions)
        EXPECT_TRUE(textsofsources().contains(plainof(caption))) << caption.toStdString();
    QStringList paths = allof(manual(), "<span class=\"menu\">([^<]+)</span>");
    paths.removeDuplicates();
    EXPECT_GT(paths.size(), 30);
    std::set<QString> menus;
    for (const action& row : actions()) {
        const QStringList above = QString(row.menu).split('|');
        for (int i = 1; i <= above.size(); ++i) menus.insert(plaintext(above.mid(0, i).join('/')));
    }
    for (const QString& text : paths) {
        const QString path = plainof(text).replace(", ", "/");
        EXPECT_TRUE(menus.contains(path) || findmenu(room.window->menuBar(), path))
            << text.toStdString();
    }
}

TEST(Manual, ValuesOfScriptsThatItNamesExist) {
    const QString page = manual();
    const QString section = page.section("<h3 id=\"values\">", 1).section("<h3", 0, 0);
    const QStringList named = allof(section.section("<p>", 2), "<code>([^<]+)</code>");
    EXPECT_GT(named.size(), 150);
    for (const QString& name : named)
        EXPECT_TRUE(scriptvaluenames().contains(name)) << name.toStdString();
}

// Every anchor that the page has, as rich text reads it.
static std::set<QString> anchorsof(const QTextDocument& text) {
    std::set<QString> found;
    for (QTextBlock b = text.begin(); b.isValid(); b = b.next())
        for (auto at = b.begin(); !at.atEnd(); ++at)
            for (const QString& name : at.fragment().charFormat().anchorNames()) found.insert(name);
    return found;
}

TEST(Manual, HelpWindowOpensEveryTopic) {
    const helproom room;
    helpat("plane");
    QDialog* const help = helpwindownow();
    ASSERT_TRUE(help);
    auto* const text = help->findChild<QTextBrowser*>("text");
    help->resize(1000, 720);
    QApplication::processEvents();
    EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0);
    const std::set<QString> anchors = anchorsof(*text->document());
    for (const QString& id : allof(manual(), " id=\"([^\"]+)\""))
        EXPECT_TRUE(anchors.contains(id)) << id.toStdString();
    auto* const tree = help->findChild<QTreeWidget*>("contents");
    EXPECT_EQ(tree->currentItem()->text(0), "On which plane a click falls");
    // Each entry of contents and index leads to its place; back and forward follow.
    auto* const index = help->findChild<QListWidget*>("index");
    ASSERT_GT(index->count(), 150);
    for (int i = 0; i < index->count(); ++i) {
        index->setCurrentRow(i);
        ASSERT_EQ(text->source().fragment(), index->item(i)->data(Qt::UserRole).toString());
    }
    const QString last = text->source().fragment();
    help->findChild<QPushButton*>("back")->click();
    EXPECT_NE(text->source().fragment(), last);
    help->findChild<QPushButton*>("forward")->click();
    EXPECT_EQ(text->source().fragment(), last);
    help->findChild<QLineEdit*>("wanted")->setText("morison wheeler");
    auto* const hits = help->findChild<QListWidget*>("hits");
    ASSERT_EQ(hits->count(), 1);
    EXPECT_FALSE(text->extraSelections().isEmpty());
    hits->setCurrentRow(0);
    EXPECT_EQ(text->source().fragment(), "loadformulas");
    // Another topic comes in the same window; what the manual does not have, at its other place.
    helpat("window-nothing", "trouble");
    EXPECT_EQ(helpwindownow(), help);
    EXPECT_EQ(text->source().fragment(), "trouble");
    help->close();
}

// Relative luminance and contrast as WCAG 2 has them.
static double luminance(const QColor& c) {
    const auto part = [](double v) {
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(c.redF()) + 0.7152 * part(c.greenF()) + 0.0722 * part(c.blueF());
}

static double contrast(const QColor& a, const QColor& b) {
    const double x = luminance(a), y = luminance(b);
    return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

TEST(Manual, ReadsWellLightAndDark) {
    for (const auto& [base, words] :
         {std::pair(Qt::white, Qt::black), std::pair(Qt::black, Qt::lightGray)}) {
        QPalette colours;
        colours.setColor(QPalette::Base, base);
        colours.setColor(QPalette::Text, words);
        QTextDocument text;
        text.setHtml(richpage(manual(), colours, 640));
        int links = 0, cells = 0;
        for (QTextBlock b = text.begin(); b.isValid(); b = b.next())
            for (auto at = b.begin(); !at.atEnd(); ++at) {
                const QTextCharFormat f = at.fragment().charFormat();
                cells +=
                    f.fontFixedPitch() || f.fontFamilies().toStringList().contains("monospace");
                if (f.anchorHref().isEmpty()) continue;
                ++links;
                ASSERT_GE(contrast(f.foreground().color(), base), 4.5) << "a link";
            }
        EXPECT_GT(links, 50);
        EXPECT_GT(cells, 50) << "the style sheet is not understood";
    }
}

// The script that makes the pictures goes through as it stands, and makes all that are shown.
TEST(Manual, ScriptMakesEveryPicture) {
    const playroom room;
    room.play(contentof(sourcedir() + "/docs/pictures.kds"), 0, "pictures.kds");
    for (const char* folder : {"manual", "docs/examples"})
        for (const auto& entry :
             fs::directory_iterator(sourcedir() + (*folder == 'm' ? "/data/" : "/") + folder))
            EXPECT_TRUE(fs::exists(room.folder / folder / entry.path().filename()))
                << entry.path() << " is made by no script";
    EXPECT_TRUE(fs::exists(room.folder / "docs/window.png"));
}
