// SPDX-License-Identifier: GPL-3.0-or-later
// The menu bar, item by item, what locks it, and the least size of the window.
#include "ui/mainwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionViewItem>
#include <QTabBar>
#include <QTableWidget>

#include "core/textfile.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "files/setmem.h"
#include "tests/support/recorder.h"
#include "ui/actionrows.h"
#include "ui/controlkinds.h"
#include "ui/controlnames.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/menus.h"
#include "ui/theme.h"
#include "ui/toolbars.h"
#include "ui/viewwidget.h"
#include "ui/windowsettings.h"

// The items without a menu of their own as "menu/item", without the marks of their keys.
static void leavesof(const QList<QAction*>& actions, const QString& path, QStringList& leaves,
                     QStringList& checked) {
    for (const QAction* action : actions) {
        const QString name = path + action->text().remove('&');
        if (action->menu())
            leavesof(action->menu()->actions(), name + "/", leaves, checked);
        else if (!action->isSeparator())
            leaves << name;
        if (action->isChecked()) checked << name;
    }
}

TEST(Mainwindow, TheMenuTreeIsWhole) {
    const sessionroom room;
    fillactions();
    QMenuBar bar;
    buildmenus(&bar);
    QStringList leaves, checked;
    leavesof(bar.actions(), "", leaves, checked);
    // The list of recent files lasts longer than a room.
    EXPECT_EQ(leaves.size() - qsizetype(recentfiles().size()), 105);
    EXPECT_EQ(leaves.removeDuplicates(), 0);
    for (const char* item : {"Define/Group Settings ....", "Settings/Font .../Element Lables...",
                             "Post-Process/Element Stress ", "Add/Loads/Nodal Loads or Mass"})
        EXPECT_TRUE(leaves.contains(item)) << item;
    EXPECT_EQ(
        checked.join("\n").toStdString(),
        QStringList({"Select/Nodes", "Add/Ready", "Settings/Scrollbars", "Settings/Global Axis",
                     "view/Nodes", "view/Elements", "view/Constrains", "view/Loads/All Loadcases",
                     "view/Graphic Elements", "view/Node labels/Off", "view/Element Label/Off"})
            .join("\n")
            .toStdString());
    EXPECT_FALSE(menuaction("mnuEditItem", 0)->isEnabled()) << "nothing was moved yet";
}

TEST(Mainwindow, AnAnalysisLocksWhatChangesModelOrFiles) {
    const sessionroom room;
    fillactions();
    QMenuBar bar;
    buildmenus(&bar);
    for (const bool locked : {true, false}) {
        menulock = locked;
        refreshmenus();
        for (const QAction* menu : bar.actions()) {
            const QString caption = menu->text();
            const bool free = caption == "&Select" || caption == "&Settings" ||
                              caption == "&view" || caption == "Information";
            EXPECT_EQ(menu->isEnabled(), free || !locked) << caption.toStdString();
        }
        for (const auto& [array, i] : {std::pair("mnuFileItem", 1), std::pair("mnuEditItem", 1),
                                       std::pair("menuanalyseitem", 2)})
            EXPECT_EQ(menuaction(array, i)->isEnabled(), !locked) << "its shortcut stays away";
        EXPECT_EQ(isallowed(*findaction("rec")), !locked) << "a drawing tool";
        QWidget parent;
        for (const QAction* item : popupmenu(2, &parent)->actions())
            EXPECT_FALSE(locked && item->isEnabled()) << item->text().toStdString();
    }
}

// A width under 8000 twips is raised to 8000, a height under 6000 to 8000; 15 twips are a pixel.
TEST(Mainwindow, IsNeverSmallerThanItsLeastSize) {
    const sessionroom room;
    mainwindow window;
    window.ending = true;
    window.show();
    window.setMinimumSize(1, 1);
    const double pixel = window.logicalDpiX() / 1440.0;
    const struct {
        double width, height, leastwidth, leastheight;  // twips
    } cases[] = {{3000, 3000, 8000, 8000}, {9000, 5900, 9000, 8000}, {12000, 9000, 12000, 9000}};
    for (const auto& c : cases) {
        window.resize(int(c.width * pixel), int(c.height * pixel));
        QApplication::processEvents();
        EXPECT_NEAR(window.height(), c.leastheight * pixel, 1) << c.height;
        EXPECT_GE(window.width(), int(c.leastwidth * pixel)) << c.width;
    }
}

// A window as after the start, with its dialogs.
struct windowroom : sessionroom {
    windowroom() {
        window.ending = true;
        wiredialogs();
        window.show();
    }
    static QDialog* open(const std::string& name) {
        EXPECT_TRUE(opendialog(name)) << name;
        QApplication::processEvents();
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && w->objectName().toStdString() == name)
                return qobject_cast<QDialog*>(w);
        ADD_FAILURE() << name;
        return nullptr;
    }
    mainwindow window;
};

// Names on the bars; "" for a line, "*" for a widget of the window's own.
static QStringList onbars(const mainwindow& window) {
    QStringList names;
    for (const auto* bar : window.findChildren<QToolBar*>()) {
        names << bar->objectName() + (bar->isHidden() ? ": hidden" : ":");
        for (QAction* item : bar->actions()) {
            const auto* const button = qobject_cast<QToolButton*>(bar->widgetForAction(item));
            const bool row = button && button->defaultAction();
            names << (item->isSeparator() ? "" : row ? button->defaultAction()->objectName() : "*");
        }
    }
    return names;
}

TEST(Mainwindow, ToolbarsAreArrangedTakenBackAndRemembered) {
    windowroom room;
    const QStringList delivered = onbars(room.window);
    const auto arrange = [&](QDialog* dialog) {
        const auto list = [&](const char* name) { return dialog->findChild<QListWidget*>(name); };
        const auto press = [&](const char* name) {
            dialog->findChild<QPushButton*>(name)->click();
        };
        list("List1")->setCurrentRow(2);  // the bar with the window's own list at its end
        list("List3")->setCurrentRow(list("List3")->count() - 1);
        const auto found = list("List2")->findItems("Settings: Symbols", Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1);
        list("List2")->setCurrentItem(found[0]);
        press("Command4");
        EXPECT_FALSE(dialog->findChild<QPushButton*>("Command4")->isEnabled()) << "once on a bar";
        press("Command8");
        list("List1")->setCurrentRow(1);
        press("Command5");
        dialog->findChild<QCheckBox*>("Check1")->click();
    };
    QDialog* const first = room.open("Toptions");
    arrange(first);
    const QStringList arranged = onbars(room.window);
    EXPECT_EQ(arranged.size(), delivered.size() + 1);
    EXPECT_LT(arranged.indexOf("mnuSettingsItem(6)"), arranged.indexOf("*"));
    EXPECT_TRUE(arranged.contains("editbar: hidden"));
    first->reject();
    EXPECT_EQ(onbars(room.window), delivered);
    QDialog* const second = room.open("Toptions");
    arrange(second);
    second->findChild<QPushButton*>("Command1")->click();
    rememberwindow(room.window);
    windowsettings().setValue("toolbars/filebar", QStringList{"mnuFileItem(0)", "gone(7)"});
    mainwindow next;
    next.ending = true;
    showtoolbars(&next, rememberedtoolbars());
    restorewindow(next);
    QStringList wanted = arranged;
    const qsizetype file = wanted.indexOf("filebar:"), edit = wanted.indexOf("editbar: hidden");
    wanted.erase(wanted.begin() + file + 2, wanted.begin() + edit);
    EXPECT_EQ(onbars(next), wanted);
    rememberfiles({room.file("a"), room.file("gone"), room.file("b.ply")});
    writefile(room.file("a.tek"), "");
    writefile(room.file("b.ply"), "");
    EXPECT_EQ(rememberedfiles(), (std::vector{room.file("a"), room.file("b.ply")}));
    remembertoolbars(deliveredtoolbars());
    for (const QString& key : windowsettings().allKeys())
        EXPECT_FALSE(key.startsWith("toolbars/")) << key.toStdString();
}

// Coordinates are typed right after a tool was chosen, wherever the keyboard is.
TEST(Mainwindow, TypingOverAViewBeginsACommand) {
    windowroom room;
    room.window.view(1)->setFocus();
    const auto type = [&](int key, Qt::KeyboardModifiers held, const char* text) {
        QKeyEvent event(QEvent::KeyPress, key, held, text);
        QApplication::sendEvent(room.window.view(1), &event);
    };
    auto* const line = room.window.findChild<QLineEdit*>("inputtext");
    type(Qt::Key_K, Qt::ControlModifier, "k");
    type(Qt::Key_Right, Qt::NoModifier, "");
    EXPECT_EQ(line->text(), "");
    type(Qt::Key_A, Qt::NoModifier, "a");
    type(Qt::Key_X, Qt::NoModifier, "x");
    EXPECT_EQ(line->text(), "ax");
    EXPECT_EQ(room.window.focusWidget()->objectName(), "inputfield");
}

// Every button of the bars on top is on show, in one row where that is wide enough.
TEST(Mainwindow, ToolbarsTakeASecondRowWhereOneIsTooNarrow) {
    windowroom room;
    int rows[2] = {};
    for (const int wide : {1024, 1700}) {
        room.window.resize(wide, 768);
        QApplication::processEvents();
        QSet<int> tops;
        for (const auto* bar : room.window.findChildren<QToolBar*>()) {
            if (room.window.toolBarArea(bar) != Qt::TopToolBarArea) continue;
            tops << bar->y();
            EXPECT_GE(bar->width(), bar->sizeHint().width())
                << wide << bar->objectName().toStdString();
        }
        rows[wide == 1700] = int(tops.size());
    }
    EXPECT_EQ(rows[0], 2);
    EXPECT_EQ(rows[1], 1);
}

// What a screen reader says of each control, and no key of a control twice in a window.
TEST(Mainwindow, EveryControlHasANameAndItsOwnKey) {
    windowroom room;
    for (const std::string& name : dialognames()) room.open(name);
    QMap<QString, QString> wanted = {{"modifyelem.Combo4", "Group name To"},
                                     {"defgroup.Text1(4)", "Thickness | Area"},
                                     {"Numint.TabStrip1(1)", "Modified Database"},
                                     {"main.Text2", "y"},
                                     {"patchedit.List1", "Patches"}};
    int seen = 0;
    for (const QWidget* w : QApplication::allWidgets()) {
        if (!(w->focusPolicy() & Qt::TabFocus) || !kindofcontrol(w)) continue;
        ++seen;
        const QString name = w->window()->objectName() + "." + w->objectName();
        if (wanted.contains(name)) {
            EXPECT_EQ(nameofcontrol(w), wanted.take(name));
        }
        EXPECT_FALSE(nameofcontrol(w).isEmpty())
            << w->window()->objectName().toStdString() << " " << w->metaObject()->className() << " "
            << w->objectName().toStdString();
    }
    EXPECT_GT(seen, 200);
    EXPECT_TRUE(wanted.isEmpty()) << wanted.firstKey().toStdString();
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        std::map<QString, std::string> keys;
        for (const QWidget* w : window->findChildren<QWidget*>()) {
            const QString text = w->property("text").toString();
            const QString key = QKeySequence::mnemonic(text).toString();
            if (key.isEmpty() || !w->isVisible() || w->window() != window) continue;
            EXPECT_EQ(keys[key], "")
                << window->objectName().toStdString() << " " << text.toStdString();
            keys[key] = text.toStdString();
        }
    }
}

// The Tab key goes down, or up again to what stands further right.
static std::string wrongtab(QDialog* dialog) {
    QList<QWidget*> chain;
    for (QWidget* w = dialog->nextInFocusChain(); w != dialog; w = w->nextInFocusChain())
        if (w->isVisible() && w->isEnabled() && w->window() == dialog &&
            w->focusPolicy() & Qt::TabFocus && !w->focusProxy() && kindofcontrol(w))
            chain << w;
    const auto box = [&](const QWidget* w) { return QRect(w->mapTo(dialog, QPoint()), w->size()); };
    for (qsizetype i = 1; i < chain.size(); ++i) {
        const QRect from = box(chain[i - 1]), to = box(chain[i]);
        if (to.bottom() <= from.top() && to.left() < from.right())
            return (chain[i - 1]->objectName() + " to " + chain[i]->objectName()).toStdString();
    }
    return {};
}

// Esc closes each window, Enter presses one button at most; each button has a key, and each choice
// as far as the letters go.
TEST(Mainwindow, EveryDialogTakesEnterEscAndKeys) {
    windowroom room;
    int keys = 0;
    for (const std::string& name : dialognames()) {
        QDialog* const dialog = room.open(name);
        int defaults = 0;
        QSet<QString> taken;
        for (const auto* w : dialog->findChildren<QWidget*>())
            if (const QString key =
                    QKeySequence::mnemonic(w->property("text").toString()).toString();
                !key.isEmpty())
                taken << key.right(1);
        for (const auto* b : dialog->findChildren<QAbstractButton*>()) {
            const auto* const push = qobject_cast<const QPushButton*>(b);
            defaults += push && push->isDefault();
            const QString text = b->text();
            if (!b->isVisible() || text.isEmpty() || qobject_cast<const QToolButton*>(b)) continue;
            if (QStringList{"OK", "Ok", "Cancel", "Ready", "Close"}.contains(text)) continue;
            keys += text.contains('&');
            const bool spent = !push && std::ranges::all_of(text.toUpper(), [&](QChar c) {
                return !c.isLetter() || taken.contains(c);
            });
            EXPECT_TRUE(text.contains('&') || spent) << name << " " << text.toStdString();
        }
        EXPECT_LE(defaults, 1) << name;
        EXPECT_EQ(wrongtab(dialog), "") << name;
        const QPointer<QDialog> open(dialog);
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(dialog, &escape);
        QApplication::processEvents();
        EXPECT_FALSE(open && open->isVisible()) << name;
    }
    EXPECT_GT(keys, 60);
}

// The text of a control that is on show in less room than it takes; "" where there is none.
static std::string cuttext(const QDialog* dialog) {
    for (const auto* w : dialog->findChildren<QWidget*>()) {
        const QString text = w->property("text").toString();
        const bool written =
            qobject_cast<const QLabel*>(w) || qobject_cast<const QAbstractButton*>(w);
        if (!written || text.isEmpty() || !w->isVisible()) continue;
        QSize needs = w->sizeHint();
        if (w->hasHeightForWidth()) needs = {0, w->heightForWidth(w->width())};
        if (needs.width() > w->width() || needs.height() > w->height()) return text.toStdString();
    }
    return {};
}

// Of 10 and of 16 points on a screen of 800 x 800 pixels.
TEST(Mainwindow, LargeLettersAreNotCutOff) {
    const QFont before = QApplication::font();
    for (const int points : {10, 16}) {
        QFont large = before;
        large.setPointSize(points);
        QApplication::setFont(large);
        windowroom room;
        for (const std::string& name : dialognames()) {
            QDialog* const dialog = room.open(name);
            const QSize screen = dialog->screen()->availableSize();
            EXPECT_LE(dialog->width(), screen.width()) << name << " " << points;
            EXPECT_LE(dialog->height(), screen.height()) << name << " " << points;
            EXPECT_EQ(cuttext(dialog), "") << name << " " << points;
            for (auto* tabs : dialog->findChildren<QTabWidget*>())
                for (int i = 0; i < tabs->count(); ++i) {
                    tabs->setCurrentIndex(i);
                    QApplication::processEvents();
                    EXPECT_EQ(cuttext(dialog), "") << name << " " << points << " page " << i;
                }
            dialog->reject();
            QApplication::processEvents();
        }
    }
    QApplication::setFont(before);
}

TEST(Mainwindow, HeadsThatShareTheWidthOfATableAreWhole) {
    QTableWidget table(1, 3);
    table.setHorizontalHeaderLabels({"x", "Governed by", "y"});
    QHeaderView* const head = table.horizontalHeader();
    head->setSectionResizeMode(QHeaderView::Stretch);
    widentable(&table);
    table.resize(table.minimumSize());
    table.show();
    QApplication::processEvents();
    EXPECT_GE(head->sectionSize(1), head->sectionSizeHint(1));
}

TEST(Mainwindow, EmptyBoxesOfADarkListAreSeen) {
    const QString style = QApplication::style()->name();
    const QPalette before = QApplication::palette();
    ASSERT_TRUE(settheme("dark"));
    const QColor ground = QApplication::palette().color(QPalette::Base);
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(ground);
    QPainter painter(&image);
    QStyleOptionViewItem item;
    item.rect = {2, 2, 16, 16};
    item.state = QStyle::State_Enabled | QStyle::State_Off;
    item.palette = QApplication::palette();
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &item, &painter);
    painter.end();
    int lightest = 0;
    for (int x = 0; x < image.width(); ++x)
        lightest = std::max(lightest, image.pixelColor(x, 10).lightness());
    EXPECT_GT(lightest, ground.lightness() + 60);
    QApplication::setStyle(style);
    QApplication::setPalette(before);
}

TEST(Mainwindow, ADialogComesBackInItsSizeAndPlace) {
    windowroom room;
    room.window.remembers = true;
    QDialog* const first = room.open("nodeattributes");
    first->setGeometry(40, 60, first->width() + 50, first->height() + 30);
    const QRect left = first->geometry();
    first->accept();
    QApplication::processEvents();
    EXPECT_EQ(room.open("nodeattributes")->geometry(), left);
}

// One window's model is known to the others, until it opens another one or goes.
TEST(Mainwindow, AModelThatIsOpenElsewhereIsTold) {
    const sessionroom room;
    for (const char* name : {"a", "b"}) writefile(room.file(std::string(name) + ".tek"), "0,0\r\n");
    modellock first, second;
    EXPECT_EQ(first.follow(room.file("a")), 0);
    EXPECT_EQ(second.follow(room.file("b")), 0);
    EXPECT_EQ(second.follow(room.file("a")), long(QCoreApplication::applicationPid()));
    EXPECT_EQ(second.follow(room.file("a")), 0) << "told once";
    EXPECT_EQ(first.follow(room.file("not saved")), 0);
    EXPECT_EQ(second.follow(room.file("b")), 0);
    EXPECT_EQ(second.follow(room.file("a")), 0) << "it is free again";
}

TEST(Mainwindow, PictureAndTableGoToTheClipboard) {
    windowroom room;
    findaction("copypicture")->item->trigger();
    EXPECT_FALSE(QGuiApplication::clipboard()->image().isNull());
    addnode(1, 2, 3);
    room.open("modelinfo")->findChild<QPushButton*>("copytable")->click();
    const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
    EXPECT_EQ(lines[0], "Item\tIn the model\tDeclared");
    EXPECT_EQ(lines[1],
              QString("%1\t1\t%2").arg(QString(sizelabels[0]).trimmed()).arg(modelsize(1)));
}

// The window goes while one selects, and knows the selection when it is back.
TEST(Mainwindow, AWindowThatPicksShowsWhatWasPicked) {
    windowroom room;
    setplatform(&room.platform);
    for (int n = 1; n <= 3; ++n) addnode(float(n), 0, 0);
    connode(1) = 3;
    condof(1) = 2;
    ncon = 1;
    editconstraint = true;
    QDialog* const dialog = room.open("nodeattributes");
    dialog->findChild<QPushButton*>("Pick")->click();
    EXPECT_FALSE(dialog->isVisible());
    nodesel(0) = 2;
    nodesel(1) = 1;
    nodesel(2) = 3;
    EXPECT_TRUE(endpendingselection());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->findChild<QComboBox*>("Combo1")->count(), 3) << "the selection and its two";
    EXPECT_EQ(dialog->findChild<QLabel*>("present")->text(), "At present: Dy 0 at 1 of 2");
    dialog->findChild<QLineEdit*>("Text1(1)")->setText("0");
    emit dialog->findChild<QLineEdit*>("Text1(1)")->textEdited("0");
    dialog->findChild<QPushButton*>("Command1")->click();
    EXPECT_EQ(dialog->findChild<QLabel*>("present")->text(), "At present: Dy 0 at 2 of 2");
}

// A text with a tag, left to guess, would be a page whose pictures are fetched.
TEST(Mainwindow, NoLabelTakesATextForAPage) {
    windowroom room;
    const QString tagged = "<img src=\"/dev/zero\">";
    groupname(1) = lcname(1) = lcombname(1) = modelname = tagged.toStdString();
    room.window.refresh();
    for (const std::string& name : dialognames()) room.open(name);
    QMessageBox box(QMessageBox::NoIcon, tagged, tagged);
    box.show();
    QProgressDialog progress(tagged, "Cancel", 0, 10);
    progress.show();
    QApplication::processEvents();
    QToolTip::showText(QPoint(10, 10), tagged, &room.window);
    int labels = 0, tips = 0;
    for (QWidget* w : QApplication::allWidgets())
        if (const auto* label = qobject_cast<QLabel*>(w); label && label->isVisible()) {
            ++labels;
            tips += label->inherits("QTipLabel");
            EXPECT_NE(label->textFormat(), Qt::AutoText) << label->text().toStdString();
        }
    EXPECT_GT(labels, 100);
    EXPECT_EQ(tips, 1);
    QToolTip::hideText();
}

// Characters of the longest text that a control lays out, and of its entries.
static qsizetype longestof(QWidget* w) {
    qsizetype longest = w->windowTitle().size();
    for (const char* property : {"text", "title", "plainText", "toolTip"})
        longest = std::max(longest, w->property(property).toString().size());
    const auto* const list = qobject_cast<QComboBox*>(w);
    const auto* const view = qobject_cast<QAbstractItemView*>(w);
    const QAbstractItemModel* const model = list ? list->model() : view ? view->model() : nullptr;
    for (int row = 0; model != nullptr && row < model->rowCount(); ++row)
        longest = std::max(longest, model->index(row, 0).data().toString().size());
    for (const QAction* action : w->actions()) longest = std::max(longest, action->text().size());
    return longest;
}

// What is laid out grows with no name of a file; what is stored stays whole.
TEST(Mainwindow, NamesWithoutEndAreShownByTheirBeginning) {
    windowroom room;
    const std::string endless(100000, 'n');
    groupname(1) = lcname(1) = endless;
    // A text that a line of its own would cut short at 32,767 characters.
    lcombname(1) = endless;
    lcomb(1, 1) = 1;
    modelname = endless;
    addrecentfile();
    textcaption();
    room.window.refresh();
    for (const std::string& name : dialognames()) room.open(name);
    int seen = 0;
    for (QWidget* w : QApplication::allWidgets()) {
        const qsizetype longest = longestof(w);
        EXPECT_LT(longest, 400) << w->metaObject()->className() << w->objectName().toStdString();
        seen += longest >= longestname;
    }
    EXPECT_GT(seen, 10);
    for (const char* name : {"Loadcombinations", "Loadkees"})
        room.open(name)->findChild<QPushButton*>("Command2")->click();
    EXPECT_TRUE(lcombname(1) == endless && lcname(1) == endless);
}

TEST(Mainwindow, AHiddenDialogComesBackWhereItStood) {
    windowroom room;
    QDialog* const dialog = room.open("viewcontrol");
    dialog->move(120, 90);
    QApplication::processEvents();
    for (int i = 0; i < 3; ++i) {
        dialog->hide();
        QApplication::processEvents();
        dialog->show();
        QApplication::processEvents();
        EXPECT_EQ(dialog->pos(), QPoint(120, 90)) << i;
    }
}

// Both strips of tabs side by side without arrows, a filter that is emptied hides nothing, and a
// key with Ctrl selects the cell that it goes to: a paste goes there.
TEST(Mainwindow, TheTablesOfNumbersShowAllTheirTabsAndRows) {
    windowroom room;
    for (const float x : {1.f, 2.f, 3.f}) addnode(x, 0, 0);
    QDialog* const dialog = room.open("Numint");
    auto* const tabs = dialog->findChild<QTabBar*>("TabStrip1(1)");
    dialog->resize(1008, 500);  // a screen of 1024
    EXPECT_LE(tabs->tabRect(tabs->count() - 1).right(), tabs->width());
    EXPECT_EQ(tabs->tabToolTip(7), "Load Combinations");
    const auto* const rows = dialog->findChild<QTableView*>("Grid1(1)")->model();
    const int all = rows->rowCount();
    auto* const filter = dialog->findChild<QLineEdit*>("Filter");
    filter->setText("nothing");
    emit filter->returnPressed();
    EXPECT_LT(rows->rowCount(), all);
    filter->findChild<QAbstractButton*>()->click();  // the cross in the box
    EXPECT_EQ(rows->rowCount(), all);
    auto* const grid = dialog->findChild<QTableView*>("Grid1(1)");
    grid->setCurrentIndex(rows->index(0, 1));
    QKeyEvent toend(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
    QApplication::sendEvent(grid, &toend);
    EXPECT_EQ(grid->selectionModel()->selectedIndexes(), QModelIndexList{rows->index(3, 3)});
}

// However a dialog goes, no selection calls back into it.
TEST(Mainwindow, ADialogThatIsGoneWaitsForNoSelection) {
    windowroom room;
    const std::pair<const char*, const char*> waiting[] = {
        {"viewcontrol", "Select"},  {"Soptions", "Select"}, {"mesh2d", "Edge(0)"},
        {"nodeattributes", "Pick"}, {"modifyelem", "Pick"}, {"defgroup", "Pick"}};
    for (const auto& [name, button] : waiting) {
        QDialog* const dialog = room.open(name);
        dialog->findChild<QAbstractButton*>(button)->click();
        EXPECT_TRUE(isselectionpending()) << name;
        delete dialog;
        EXPECT_FALSE(isselectionpending()) << name;
        EXPECT_FALSE(endpendingselection()) << name;
    }
}

TEST(Mainwindow, ARefreshLeavesTheCommentWhereItWasScrolledTo) {
    windowroom room;
    for (const char* end : {"\r\n", "\n", "\xC2\xA0\r"}) {
        commenttext.clear();
        for (int i = 0; i < 500; ++i) commenttext += "a line" + std::string(end);
        commentvisible = true;
        room.window.refresh();
        auto* const comment = room.window.findChild<QPlainTextEdit*>("comment");
        comment->verticalScrollBar()->setValue(200);
        room.window.refresh();
        EXPECT_EQ(comment->verticalScrollBar()->value(), 200) << end;
    }
}

TEST(Mainwindow, ADroppedModelIsAskedAboutAsOpenDoes) {
    windowroom room;
    const std::string path = sourcedir() + "/data/examples/portal.tek";
    const auto drop = [&] {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
        const QPoint middle = room.window.rect().center();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&room.window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&room.window, &event);
        QApplication::processEvents();
    };
    addnode(1, 2, 3);
    room.platform.answerqueue = {answers::cancel};
    drop();
    EXPECT_EQ(nnodes(), 1) << "work that would be lost";
    room.platform.answerqueue = {answers::no};
    drop();
    EXPECT_GT(nnodes(), 1);
    EXPECT_TRUE(room.platform.told("Save model ?"));
}

// Over an empty view by the keyboard: a drawing is begun and given up, an example opens as a copy
// of the user's own; an analysis of nothing leads to the mesh.
TEST(Mainwindow, AnEmptyModelOffersWhatToBeginWith) {
    sessionroom room;
    wiredialogs();
    const std::string before = std::exchange(programdir, sourcedir() + "/data");
    mainwindow window;
    window.ending = true;
    window.show();
    window.findChild<QWidget*>("view1")->resize(820, 600);
    const auto* const page = window.findChild<QFrame*>("startpage");
    const auto enter = [&](const char* button) {
        auto* const b = page->findChild<QToolButton*>(button);
        ASSERT_TRUE(b && b->isVisible() && (b->focusPolicy() & Qt::TabFocus)) << button;
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(b, &press);
        window.refresh();
    };
    enter("newdrawing");
    EXPECT_TRUE(drawline);
    keyhandler(keyescape);
    runaction(*findaction("menuanalyseitem(2)"));
    const QWidgetList open = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        open, [](const QWidget* w) { return w->isVisible() && w->objectName() == "needs"; });
    ASSERT_NE(found, open.end());
    (*found)->findChild<QPushButton*>("Place(0)")->click();
    EXPECT_EQ(room.platform.dialogs.back(), "Mselect");
    room.platform.answerqueue = {answers::no};  // what was done before is not worth a file
    enter("example(portal)");
    EXPECT_TRUE(nnodes() > 0 && !page->isVisible());
    EXPECT_EQ(modelname, room.file("examples/portal"));
    EXPECT_TRUE(QFileInfo(QString::fromStdString(modelname + ".tek")).isWritable());
    programdir = before;
}

// What the solver warns of is told whole, over all columns, and widens none of them.
TEST(Dialogs, BalanceTellsLongWarningsInSeveralLines) {
    windowroom room;
    const std::string warning(40, 'w'), sums = ",-1600000,10000,0,0,0,1600000\r\n";
    std::string told;
    for (int i = 0; i < 8; ++i) told += warning + " ";
    modelname = room.file("job");
    writefile(modelname + ".sum",
              "\"static\",\"\",1\r\n\"modes\",\"\",0\r\n\"case\",1,\"LC 1\"\r\n\"applied\"" + sums +
                  "\"reactions\"" + sums + "\"warnings\",1\r\n\"warning\",\"" + told + "\"\r\n");
    QDialog* const dialog = windowroom::open("balance");
    ASSERT_NE(dialog, nullptr);
    const auto* const table = dialog->findChild<QTableWidget*>("sums");
    const int last = table->rowCount() - 1;
    ASSERT_TRUE(table->item(last, 0)->text().contains(QString::fromStdString(warning)));
    EXPECT_FALSE(table->horizontalScrollBar()->isVisible());
    const int line = table->fontMetrics().height(),
              width = table->visualItemRect(table->item(last, 0)).width();
    const int wide = table->fontMetrics().horizontalAdvance(table->item(last, 0)->text());
    EXPECT_GE(table->rowHeight(last), line * (wide / width));
    EXPECT_LT(table->columnWidth(0), table->viewport()->width() / 2);
}
