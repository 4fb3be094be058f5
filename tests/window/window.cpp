// SPDX-License-Identifier: GPL-3.0-or-later
// The main window as a user has it: the first five steps of the README, the command line, the menus
// by their letters, Esc in every dialog, and the questions on leaving.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPrinterInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <thread>

#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "core/start.h"
#include "core/views.h"
#include "edit/move.h"
#include "edit/selection.h"
#include "files/filemenu.h"
#include "loads/nodeattributes.h"
#include "tests/window/user.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"

namespace fs = std::filesystem;

// The program as it stands after its start, in a home of its own.
class Window : public testing::Test {
  protected:
    void SetUp() override {
        const fs::path data = fs::path(KALVANE_SOURCE_DIR) / "data";
        for (const char* name : {"ELTYP.DAT", "ELDES.DAT"}) fs::copy_file(data / name, home / name);
        fs::copy_file(KALVANE_FEIFLU, home / "feiflu");
        fs::copy(data / "examples", home / "models");
        writesizes();
        // The page after a run would lie over the views.
        std::ofstream(home / "window.ini") << "[balance]\nafter=false\n";
        ask([&] {
            programdir = fs::path(KALVANE_FEIFLU).parent_path();
            start(home.string());
            notesaved();
            window = new mainwindow;
            showmainwindow(*window, false);
            return true;
        });
        untilactive("main");
    }
    // A test that failed may leave boxes open.
    void TearDown() override {
        for (int boxes = 0; boxes < 9 && HasFailure(); ++boxes) key("Escape");
        ask([&] {
            window->ending = true;
            delete window;
            return true;
        });
    }
    void writesizes() const {
        std::ofstream(home / "decmem.DAT") << "5000\r\n5000\r\n5000\r\n50\r\n2000\r\n200\r\n4\r\n";
    }
    // By the menu's letter, and down to the item.
    void choose(const std::string& letter, const QString& caption) {
        key("alt+" + letter);
        untilactive("QMenu");
        for (int tries = 0; tries < 20; ++tries) {
            const bool there = ask([&] {
                const QAction* const at = qobject_cast<QMenu*>(active())->activeAction();
                return at && at->text().remove('&') == caption;
            });
            if (there) return key("Return");
            const auto before = ask([] { return qobject_cast<QMenu*>(active())->activeAction(); });
            key("Down");
            until("the next item",
                  [&] { return qobject_cast<QMenu*>(active())->activeAction() != before; });
        }
        throw std::runtime_error("no item " + caption.toStdString());
    }
    void open(const std::string& path) {
        key("ctrl+o");
        untilactive("QFileDialog");
        typetext(path);
        key("Return");
        until("the model " + path, [] { return nnodes() > 0; });
        untilactive("main");
    }
    std::string model(const std::string& name) const { return (home / "models" / name).string(); }
    static QString status() {
        return ask([] { return themainwindow->findChild<QLabel*>("Label1")->text(); });
    }

    QTemporaryDir room;
    const fs::path home = room.path().toStdString();
    mainwindow* window = nullptr;
};

TEST_F(Window, TheFiveStepsOfTheReadme) {
    open(model("portal.tek"));
    choose("n", "Options...");
    untilactive("Aoptions");
    click("Option1(0)");
    click("Command1");
    until("the 2-D analysis named",
          [] { return dim2d && themainwindow->findChild<QWidget*>("dimension")->isVisible(); });
    untilactive("main");
    choose("n", "Analyse");
    until("the words on the results", [] {
        return themainwindow->findChild<QLabel*>("Label1")->text().contains("largest displacement");
    });
    EXPECT_TRUE(status().contains("Analysed in")) << status().toStdString();
    choose("p", "Deformed Shape");
    until("the deformed shape", [] { return menupostItem(deformedshape).checked && maxdisp > 0; });
    const double first = ask([] { return maxdisp; });
    click("Combo1");
    untilactive("QComboBoxPrivateContainer");
    key("Down");
    key("Return");
    until("the second combination", [] { return curlcomb == 2; });
    EXPECT_NE(ask([] { return maxdisp; }), first);
    const float scale = ask([] { return viewscale(1); });
    click("view1", mousebutton::wheelup);
    until("the view larger", [&] { return viewscale(1) > scale; });
    const float at = ask([] { return viewptx(1); });
    drag("view1", 120, 0, mousebutton::middle);
    until("the view shifted", [&] { return viewptx(1) != at; });
}

TEST_F(Window, EveryWarningOfARunIsOneClickAway) {
    open(model("portal.tek"));
    ask([] {
        dim2d = true;
        const int empty = ++loadnode(0, 0);  // the solver warns of a case without loads
        lcname(empty) = "Nothing";
        return lcpar(empty, 0) = 1;
    });
    key("F9");
    click("warnings");
    untilactive("reportviewer");
    const QString line = ask([] {
        const auto* const text = active()->findChild<QListView*>("text");
        return text->currentIndex().data().toString();
    });
    EXPECT_TRUE(line.startsWith("Warning: ") && line.contains("Nothing")) << line.toStdString();
    key("Escape");
    untilactive("main");
}

TEST_F(Window, AnEmptyViewLeadsToTheExamples) {
    click("example(bracket)");
    until("its model", [] { return nnodes() > 0; });
    EXPECT_EQ(ask([] { return modelname; }), (home / "examples/bracket").string());
    until("the start page gone",
          [] { return !themainwindow->findChild<QWidget*>("startpage")->isVisible(); });
    key("ctrl+o");
    untilactive("QFileDialog");
    EXPECT_TRUE(ask([this] {
        return qobject_cast<QFileDialog*>(active())->sidebarUrls().contains(
            QUrl::fromLocalFile(QString::fromStdString(home / "examples")));
    }));
    key("Escape");
    untilactive("main");
}

TEST_F(Window, WithoutAPrinterAPdfIsOffered) {
    if (ask([] { return !QPrinterInfo::availablePrinterNames().isEmpty(); }))
        GTEST_SKIP() << "there is a printer";
    open(model("portal.tek"));
    const std::string paper = (home / "page.pdf").string();
    key("ctrl+p");
    untilactive("QMessageBox");
    EXPECT_EQ(ask([] { return qobject_cast<QMessageBox*>(active())->text(); }), "No printer found");
    key("Return");
    untilactive("QFileDialog");
    EXPECT_EQ(ask([] { return qobject_cast<QFileDialog*>(active())->directory().path(); }),
              QString::fromStdString(home / "models"));
    key("ctrl+a");
    typetext(paper);
    key("Return");
    until("the page", [&] { return fs::exists(paper); });
    untilactive("main");
}

TEST_F(Window, TheCommandLine) {
    const auto line = [] {
        return themainwindow->findChild<QLineEdit*>("inputtext")->text().toStdString();
    };
    choose("a", "Free Node");
    until("the mode", [] { return bool(addnodemode); });
    click("inputtext");
    typetext("ax=1;2;3");
    key("Return");
    until("a node", [] { return nnodes() == 1; });
    EXPECT_EQ(ask([] { return double(nodes(0, 1, 2)); }), 3);
    typetext("dx=5");
    key("Return");
    until("another node", [] { return nnodes() == 2; });
    const std::pair<const char*, const char*> walk[] = {
        {"Up", "dx=5"}, {"Up", "ax=1;2;3"}, {"Down", "dx=5"}, {"Down", ""}};
    for (const auto& [name, text] : walk) {
        key(name);
        until(std::string(name) + " to " + text, [&, t = text] { return line() == t; });
    }
    key("Escape");
    until("the end of the mode", [] { return !addnodemode; });
    // With the focus that Tab gives: from the list of combinations.
    ask([] { return themainwindow->findChild<QWidget*>("Combo1")->setFocus(), true; });
    key("Tab");
    typetext("hel");
    key("Return");
    untilactive("cardhelp");
    key("Escape");
    untilactive("main");
}

TEST_F(Window, EveryMenuOpensByItsLetter) {
    for (const char* letter : {"f", "e", "a", "d", "v", "n", "p"}) {
        key(std::string("alt+") + letter);
        untilactive("QMenu");
        const QString title = ask([] { return qobject_cast<QMenu*>(active())->title().toLower(); });
        EXPECT_TRUE(title.contains(QString("&") + letter)) << letter << title.toStdString();
        key("Escape");
        until("the menu closed", [] { return QApplication::activePopupWidget() == nullptr; });
        key("Escape");  // leaves the bar
        until("the bar left", [] { return !themainwindow->menuBar()->hasFocus(); });
    }
}

TEST_F(Window, EscClosesEveryDialog) {
    open(model("portal.tek"));
    // Windows of results first say that there are none.
    const auto pastmessages = [](const std::string& name) {
        const auto ismessage = [] { return active() && active()->inherits("QMessageBox"); };
        const auto isthere = [&] {
            return active() && active()->objectName().toStdString() == name;
        };
        until("the window " + name, [&] {
            if (ismessage()) active()->close();
            return isthere();
        });
    };
    for (const std::string& name : ask(dialognames)) {
        start([name] {
            setselectitem(selectnodes);
            nodesel(0) = nodesel(1) = 1;  // two of them want something selected
            patches(0, 0, 0) = 1;
            patchsel(0) = patchsel(1) = 1;
            if (name == "nodeattributes")
                startattributes(attributemodes::constraints);
            else
                opendialog(name);
        });
        pastmessages(name);
        key("Escape");
        pastmessages("main");
    }
}

TEST_F(Window, TheTablesOfNumbersByKeysAlone) {
    open(model("portal.tek"));
    const int before = ask(nnodes);
    choose("e", "Numerical Interface");
    untilactive("Numint");
    key("ctrl+End");
    typetext("7");
    key("Return");
    untilactive("QMessageBox");
    key("alt+y");
    until("the new node", [&] { return nnodes() == before + 1 && nodes(0, nnodes(), 2) == 7; });
    untilactive("Numint");
    key("Up");  // from the spare row
    key("shift+F10");
    untilactive("pop01");
    key("Up");  // Delete
    key("Return");
    untilactive("QMessageBox");
    key("alt+y");
    until("the node gone", [&] { return nnodes() == before; });
    key("Escape");
    untilactive("main");
}

TEST_F(Window, EscAtAQuestionStays) {
    open(model("portal.tek"));
    start([this] { window->close(); });
    untilactive("QMessageBox");
    key("Escape");
    untilactive("main");
    EXPECT_TRUE(ask([this] { return window->isVisible() && nnodes() > 0; }));
    start([this] { window->close(); });
    untilactive("QMessageBox");
    key("alt+n");
    until("the end", [this] { return !window->isVisible(); });
}

TEST_F(Window, OpenAsksOnlyForWorkThatWouldBeLost) {
    open(model("portal.tek"));
    const int count = ask(nnodes);
    key("ctrl+o");
    untilactive("QFileDialog");
    key("Escape");
    untilactive("main");
    click("inputtext");
    choose("a", "Free Node");
    until("the mode", [] { return bool(addnodemode); });
    typetext("ax=1;2;3");
    key("Return");
    until("a node", [&] { return nnodes() == count + 1; });
    start([this] { askandopen(model("tower.tek")); });
    untilactive("QMessageBox");
    EXPECT_EQ(ask([] { return qobject_cast<QMessageBox*>(active())->text(); }), "Save model ?");
    key("Escape");
    untilactive("main");
    EXPECT_EQ(ask(nnodes), count + 1);
    key("ctrl+o");
    untilactive("QMessageBox");
    key("alt+n");
    untilactive("QFileDialog");
    key("Escape");
    untilactive("main");
}

TEST_F(Window, DialogsStartInTheFolderLastUsed) {
    const auto folder = [] {
        return ask([] { return qobject_cast<QFileDialog*>(active())->directory().path(); });
    };
    open(model("portal.tek"));
    fs::create_directory(home / "other");
    key("ctrl+shift+s");
    untilactive("QFileDialog");
    EXPECT_EQ(folder().toStdString(), (home / "models").string()) << "beside the model";
    key("ctrl+a");
    typetext((home / "other/mine.tek").string());
    key("Return");
    until("the copy", [this] { return fs::exists(home / "other/mine.tek"); });
    untilactive("main");
    key("ctrl+n");
    untilactive("QMessageBox");
    key("alt+n");
    until("an empty model", [] { return nnodes() == 0; });
    untilactive("main");
    key("ctrl+o");
    untilactive("QFileDialog");
    EXPECT_EQ(folder().toStdString(), (home / "other").string()) << "the one last used";
    key("Escape");
    untilactive("main");
}

// This window and a program beside it, in one home: the second run begins when the first has ended,
// and each has its own results.
TEST_F(Window, TwoProgramsAnalyseOneAfterTheOther) {
    const fs::path runs = home / "runs", go = home / "go", seen = home / "seen.png";
    std::ofstream(home / "feiflu")
        << "#!/bin/sh\necho begin >>" << runs << "\nwhile [ ! -e " << go
        << " ]; do sleep 0.05; done\n"
        << KALVANE_FEIFLU << "\ncode=$?\necho end >>" << runs << "\nexit $code\n";
    fs::permissions(home / "feiflu", fs::perms(0755));
    open(model("portal.tek"));
    ask([] { return dim2d = true; });
    key("F9");
    until("the first run", [&] { return fs::exists(runs); });
    std::ofstream(home / "other.kds") << "file models/tower.tek\nmenu \"File/Open...\"\nwindow "
                                      << seen.string() << "\nmenu \"Analyse/Analyse\"\n";
    QProcess other;
    QProcessEnvironment room = QProcessEnvironment::systemEnvironment();
    room.insert("KALVANE_HOME", QString::fromStdString(home));
    room.insert("QT_QPA_PLATFORM", "offscreen");
    other.setProcessEnvironment(room);
    other.start(KALVANE_PROGRAM, {"--script", QString::fromStdString(home / "other.kds")});
    until("the other program", [&] { return fs::exists(seen); });
    std::this_thread::sleep_for(std::chrono::seconds(1));  // it would have begun by then
    std::ofstream(go) << "go";
    const int patience = 60000;  // milliseconds
    EXPECT_TRUE(other.waitForFinished(patience));
    EXPECT_EQ(other.exitCode(), 0) << other.readAllStandardError().toStdString();
    until("the end of the first", [] {
        return themainwindow->findChild<QLabel*>("Label1")->text().startsWith("Analysed in");
    });
    std::ifstream in(runs);
    std::string order, word;
    while (in >> word) order += word + " ";
    EXPECT_EQ(order, "begin end begin end ");
    for (const char* name : {"portal.log", "tower.log"}) {
        std::ifstream log(model(name));
        const std::string text{std::istreambuf_iterator<char>(log), {}};
        EXPECT_TRUE(text.find("Results are complete") != text.npos) << name;
    }
}
