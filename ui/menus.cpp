// SPDX-License-Identifier: GPL-3.0-or-later
// The table of menu items.
#include "ui/menus.h"

#include <QMenu>
#include <algorithm>
#include <cstring>
#include <map>

#include "core/journal.h"
#include "core/model.h"
#include "core/session.h"
#include "edit/Edit.h"
#include "edit/Mouseprocedures.h"
#include "edit/move.h"
#include "edit/refine.h"
#include "edit/selection.h"
#include "edit/undo.h"
#include "files/analyse.h"
#include "files/filemenu.h"
#include "files/settings.h"
#include "loads/nodeattributes.h"
#include "post/contour.h"
#include "post/printdraw.h"
#include "post/shapes.h"
#include "tools/findpatch.h"
#include "tools/intersect.h"
#include "tools/placenodes.h"
#include "tools/pointentry.h"
#include "ui/controls.h"
#include "ui/demonstration.h"
#include "ui/dialogs.h"
#include "ui/icons.h"
#include "ui/mainwindow.h"
#include "view/moddraw.h"
#include "view/setviews.h"

// A caption without its mark of the key, dots and blanks at the end.
static std::string plaincaption(const char* caption) {
    std::string name = caption;
    std::erase(name, '&');
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.pop_back();
    return name;
}

// A command that fails returns to the rest state and tells why.
static std::function<void()> guardedcommand(const char* caption, std::function<void()> command) {
    return [name = plaincaption(caption), command] {
        const step s(name);
        guarded(command, fallback);
    };
}

static std::function<bool()> checkof(array1<menustate>& list, int i) {
    return [&list, i] { return list(i).checked; };
}

static std::function<bool()> enabledof(array1<menustate>& list, int i) {
    return [&list, i] { return list(i).enabled; };
}

static std::function<void()> toggleandredraw(array1<menustate>& list, int i) {
    return [&list, i] {
        list(i).checked = !list(i).checked;
        theplatform().refresh();
        redrawall();
    };
}

static std::function<void()> chooseandredraw(array1<menustate>& list, int i) {
    return [&list, i] {
        checkonly(list, i);
        theplatform().refresh();
        redrawall();
    };
}

static void togglescrollbars() {
    mnuSettingsItem(2).checked = !mnuSettingsItem(2).checked;
    arrangeviews();  // the views give them room
    redrawall();
}

static void toggleselect(int i) {
    if (i == 5) {
        MnuSelectItem(5).checked = !MnuSelectItem(5).checked;
        labelselect();
    } else {
        setselectitem(i);
        theplatform().refresh();  // the item that was on already stays on
    }
}

// The mode "Free Node": each press or command point adds a node.
static void startaddnode() {
    startmode(addnodemode);
    checkonly(Mnuadditem, 1);
    resultflag = dorenumber = 1;
    mnuEditItem(0).enabled = false;
    prompt("Add", "", "", "<Left Button> or <Command> to add, <ESC> to stop");
}

static menurow check(const char* menu, const char* array, int index, const char* caption,
                     array1<menustate>& list, int i, const char* icon = "") {
    return {menu, array, index, caption, icon, "", toggleandredraw(list, i), checkof(list, i)};
}

static menurow choice(const char* menu, const char* array, int index, const char* caption,
                      array1<menustate>& list) {
    return {
        menu, array, index, caption, "", "", chooseandredraw(list, index), checkof(list, index)};
}

static menurow separator(const char* menu, const char* array, int index) {
    return {menu, array, index, ""};
}

static void addfilemenu(std::vector<menurow>& t) {
    const char* const m = "&File";
    const char* const a = "mnuFileItem";
    t.push_back({m, a, 0, "&New", "new", "Ctrl+N", [] { menunew(); }});
    t.push_back({m, a, 1, "&Open...", "open", "Ctrl+O", [] { menuopen(); }});
    t.push_back({m, a, 2, "&Import model...", "", "", [] { menuimport(); }});
    t.push_back({m, a, 3, "Save &As...", "save", "Ctrl+Shift+S", [] {
                     if (menusave() == reply::done) addrecentfile();
                 }});
    t.push_back({m, a, 4, "&Print", "print", "Ctrl+P", menuprint});
    t.push_back(separator(m, a, 5));
    t.push_back({m, a, 6, "Save Settings", "", "", savesettings});
    t.push_back({m, a, 7, "Get Settings", "", "", getsettings});
    t.push_back({m, a, 8, "Model Size...", "size", "", [] { theplatform().showdialog("setmem"); }});
    t.push_back(separator(m, a, 9));
    t.push_back({m, a, 10, "E&xit", "exit", "Ctrl+Q", [] { menuexit(); }});
}

static void addeditmenu(std::vector<menurow>& t) {
    const char* const m = "&Edit";
    const char* const a = "mnuEditItem";
    t.push_back({m, a, 0, "Undo", "undo", "", editundo, {}, enabledof(mnuEditItem, 0)});
    t.push_back({m, a, 1, "Delete", "delete", "Del", editdelete});
    t.push_back({m, a, 2, "Cu&t", "cut", "Ctrl+X", editcut});
    t.push_back({m, a, 3, "C&opy", "copy", "Ctrl+C", editcopy});
    t.push_back({m, a, 4, "&Paste", "paste", "Ctrl+V", [] { editpaste(); }});
    t.push_back(separator(m, a, 5));
    t.push_back({m, a, 6, "Drag/Drop", "", "", startmove});
    t.push_back({m, a, 7, "Modify Selection...", "modify", "", modifyselection});
    t.push_back({m, a, 8, "Refine elements", "refine", "", [] { refineelements(); }});
    t.push_back({m, a, 9, "Numerical Interface", "numbers", "",
                 [] { theplatform().showdialog("Numint"); }});
    t.push_back({m, a, 10, "Findpatch", "patch", "", [] { findpatch(); }});
}

static void addselectmenu(std::vector<menurow>& t) {
    static const char* const captions[] = {"Nodes",  "Elements", "Patches",
                                           "Forces", "Graphics", "Snap"};
    static const char* const pictures[] = {"node", "element", "patch", "force", "graphic", "snap"};
    for (int i = 0; i <= 5; ++i)
        t.push_back({"&Select", "MnuSelectItem", i, captions[i], pictures[i], "",
                     [i] { toggleselect(i); }, checkof(MnuSelectItem, i),
                     enabledof(MnuSelectItem, i)});
}

static void addaddmenu(std::vector<menurow>& t) {
    const char* const m = "&Add";
    const char* const a = "Mnuadditem";
    const auto add = [&](int i, const char* caption, const char* icon,
                         std::function<void()> run = nullptr) {
        t.push_back({m, a, i, caption, icon, "", std::move(run), checkof(Mnuadditem, i),
                     enabledof(Mnuadditem, i)});
    };
    add(0, "Ready", "", [] { addready(); });
    add(1, "Free Node", "node", startaddnode);
    add(2, "Element...", "element", [] {
        addready();
        resultflag = 1;
        mnuEditItem(0).enabled = false;
        theplatform().showdialog("addsingleelem");
    });
    add(3, "Mesh...", "mesh", [] {
        addready();
        resultflag = 1;
        mnuEditItem(0).enabled = false;
        theplatform().showdialog("Mselect");
    });
    add(4, "Object...", "");
    t.push_back(separator(m, a, 5));
    const auto attributes = [](attributemodes mode) { return [mode] { startattributes(mode); }; };
    add(6, "Constraints...", "constraint", attributes(attributemodes::constraints));
    t.push_back({"&Add|Loads", "mnuloads", 0, "Nodal Loads or Mass", "load", "",
                 attributes(attributemodes::nodalloads)});
    t.push_back({"&Add|Loads", "mnuloads", 1, "Element Pressure Loads", "", "",
                 attributes(attributemodes::elementloads)});
    t.push_back({"&Add|Loads", "mnuloads", 2, "Line Pressure Loads", "", "",
                 attributes(attributemodes::none)});
    t.back().tip = linepressurehint;
    t.push_back(separator(m, a, 8));
    const char* const drawing = "&Add|Graphics";
    const char* const g = "Mnugraphicitem";
    const auto draw = [](graphickinds kind) { return [kind] { startdrawing(kind); }; };
    const auto connect = [](connectmodes mode) { return [mode] { connectgraphics(mode); }; };
    const auto runs = [](const Flag& flag) { return [&flag] { return bool(flag); }; };
    t.push_back({drawing, g, 0, "Line", "graphic", "", draw(kindline), runs(drawline)});
    t.push_back(
        {drawing, g, 1, "Circle Section", "circle", "", draw(kindcircle), runs(drawcircle)});
    t.push_back({drawing, g, 2, "Curve", "curve", "", draw(kindcurve), runs(drawcurve)});
    t.push_back(separator(drawing, g, 3));
    t.push_back(
        {drawing, g, 4, "Intersection", "intersection", "", connect(connectmodes::intersection)});
    t.push_back({drawing, g, 5, "Extend line", "extend", "", connect(connectmodes::extend)});
    t.push_back({drawing, g, 6, "Connect 3-D", "connect", "", connect(connectmodes::connect3d)});
}

static void adddefinemenu(std::vector<menurow>& t) {
    const char* const m = "&Define";
    const char* const a = "definegroup";
    const auto groups = [] { theplatform().showdialog("defgroup"); };
    t.push_back({m, a, 0, "Element Group...", "group", "", groups});
    t.push_back(
        {m, a, 1, "Loadcase", "loadcase", "", [] { theplatform().showdialog("Loadkees"); }});
    t.push_back({m, a, 2, "Object..."});
    t.push_back({m, a, 3, "Group Settings ....", "", "", groups});
}

static void addsettingsmenu(std::vector<menurow>& t) {
    const char* const m = "&Settings";
    const char* const a = "mnuSettingsItem";
    t.push_back(
        {m, a, 0, "&Colors ...", "colors", "", [] { theplatform().showdialog("Colorset"); }});
    t.push_back(
        {"&Settings|&Font ...", "mnusetfont", 0, "Node Labels...", "font", "", asknodefont});
    t.push_back(
        {"&Settings|&Font ...", "mnusetfont", 1, "Element Lables...", "", "", askelementfont});
    t.push_back({m, a, 2, "Scrollbars", "", "", togglescrollbars, checkof(mnuSettingsItem, 2)});
    t.push_back(check(m, a, 3, "Global Axis", mnuSettingsItem, 3));
    t.push_back(check(m, a, 4, "Local Axis", mnuSettingsItem, 4));
    t.push_back(
        {m, a, 5, "Options...", "options", "", [] { theplatform().showdialog("Options"); }});
    t.push_back(
        {m, a, 6, "Symbols ...", "symbols", "", [] { theplatform().showdialog("Symbols"); }});
    t.push_back({m, a, 7, "Toolbars ..."});
    t.push_back(check(m, a, 8, "End Releases", mnuSettingsItem, 8));
}

static void addviewmenu(std::vector<menurow>& t) {
    const char* const m = "&view";
    const char* const a = "mnudrawlist";
    t.push_back(
        {m, "view", 0, "&View Set...", "iso", "", [] { theplatform().showdialog("viewcontrol"); }});
    t.push_back({m, "redraw", 0, "&Redraw", "redraw", "F5", [] { redrawall(); }});
    t.push_back(separator(m, "redraw", 1));
    t.push_back(check(m, a, 0, "&Nodes", mnudrawlist, 0));
    t.push_back(check(m, a, 1, "&Elements", mnudrawlist, 1));
    t.push_back(check(m, a, 2, "&Constrains", mnudrawlist, 2));
    const char* const loads = "&view|&Loads";
    static const char* const kinds[] = {"Off", "Active Loadcase", "All Loadcases",
                                        "Active Load combination"};
    for (int i = 0; i <= 3; ++i) t.push_back(choice(loads, "viewloads", i, kinds[i], viewloads));
    t.push_back(check(m, a, 4, "Graphic Elements", mnudrawlist, 4));
    t.push_back(check(m, a, 5, "Patches", mnudrawlist, 5));
    static const char* const nodelabels[] = {"Off", "Numbers", "Names"};
    for (int i = 0; i <= 2; ++i)
        t.push_back(choice("&view|Node labels", "Nodelabeltype", i, nodelabels[i], Nodelabeltype));
    static const char* const elementlabels[] = {"Off",   "Number",     "Type",
                                                "Group", "Color code", "Name"};
    for (int i = 0; i <= 5; ++i)
        t.push_back(
            choice("&view|Element Label", "elemlabeltype", i, elementlabels[i], elemlabeltype));
    t.push_back(separator(m, a, 8));
    t.push_back({m, a, 9, "Window", "zoomwindow", "", startviewwindow});
    t.push_back(check(m, a, 10, "Hidden Line", mnudrawlist, 10, "hidden"));
}

static void addanalysemenu(std::vector<menurow>& t) {
    const char* const m = "A&nalyse";
    const char* const a = "menuanalyseitem";
    t.push_back({m, a, 0, "Check model", "check"});
    t.push_back(
        {m, a, 1, "Options...", "options", "", [] { theplatform().showdialog("Aoptions"); }});
    t.push_back({m, a, 2, "Analyse", "analyse", "F9", [] { runanalysis(); }});
}

static void addpostmenu(std::vector<menurow>& t) {
    const char* const m = "&Post-Process";
    const char* const a = "menupostItem";
    t.push_back({m, "Loadcase", 0, "Load Combinations ...", "combination", "",
                 [] { theplatform().showdialog("Loadcombinations"); }});
    t.push_back(separator(m, a, 0));
    t.push_back(
        {m, a, 1, "Deformed Shape", "deformed", "", showdeformed, checkof(menupostItem, 1)});
    t.push_back({m, a, 2, "Contour plot", "contour", "", showcontour, checkof(menupostItem, 2)});
    t.push_back({m, a, 3, "Mode Shape", "modeshape", "", showmode, checkof(menupostItem, 3)});
    t.push_back(
        {m, a, 4, "Element Stress ", "stress", "", showelementstress, checkof(menupostItem, 4)});
    t.push_back({m, a, 5, "Report...", "report", "", [] { theplatform().showdialog("Roptions"); }});
    t.push_back(separator(m, a, 6));
    t.push_back(
        {m, a, 7, "Options...", "options", "", [] { theplatform().showdialog("Soptions"); }});
}

static void addinformationmenu(std::vector<menurow>& t) {
    const char* const m = "Information";
    t.push_back({m, "Info", 0, "Info", "info", "", [] { theplatform().showdialog("Info"); }});
    t.push_back({m, "userhelp", 0, "User Manual...", "help", "F1",
                 [] { theplatform().openwithbrowser(appdir + "/manual.htm"); }});
    t.push_back({m, "mnuAbout", 0, "&About Kalvane...", "", "",
                 [] { theplatform().showdialog("frmAbout"); }});
    t.push_back(
        {m, "info", 0, "Model info...", "", "", [] { theplatform().showdialog("modelinfo"); }});
    t.push_back({m, "demo01", 0, "Run Demo", "demo", "", rundemo});
}

static std::vector<menurow> filltable() {
    std::vector<menurow> t;
    for (const auto add :
         {addfilemenu, addeditmenu, addselectmenu, addaddmenu, adddefinemenu, addsettingsmenu,
          addviewmenu, addanalysemenu, addpostmenu, addinformationmenu})
        add(t);
    return t;
}

std::vector<menurow>& menus() {
    static std::vector<menurow> table = filltable();
    return table;
}

// --- the menu bar -------------------------------------------------------------------------------

static QMenu* filemenu;
static std::map<std::string, QMenu*> built;
static std::vector<QAction*> recentactions;

static QMenu* menuat(QMenuBar* bar, const std::string& path) {
    if (const auto found = built.find(path); found != built.end()) return found->second;
    const std::size_t cut = path.rfind('|');
    QMenu* const made = cut == path.npos
                            ? bar->addMenu(QString::fromStdString(path))
                            : menuat(bar, path.substr(0, cut))
                                  ->addMenu(QString::fromStdString(path.substr(cut + 1)));
    built[path] = made;
    return made;
}

// "&Loads" of the draw list and "Loads", "Graphics" of the Add menu carry a submenu; all other rows
// are plain actions.
static void addrow(QMenuBar* bar, menurow& row) {
    QMenu* const menu = menuat(bar, row.menu);
    if (*row.caption == 0) {
        menu->addSeparator();
        return;
    }
    row.action = menu->addAction(QString::fromUtf8(row.caption));
    row.action->setObjectName(QString("%1(%2)").arg(row.array).arg(row.index));
    if (*row.icon) row.action->setIcon(iconof(row.icon));
    if (*row.shortcut) row.action->setShortcut(QKeySequence(row.shortcut));
    if (row.checked) row.action->setCheckable(true);
    if (*row.tip) {
        row.action->setToolTip(QString::fromUtf8(row.tip));
        menu->setToolTipsVisible(true);
    }
    if (row.run)
        QObject::connect(row.action, &QAction::triggered, guardedcommand(row.caption, row.run));
}

void buildmenus(QMenuBar* bar) {
    built.clear();
    recentactions.clear();
    for (menurow& row : menus()) addrow(bar, row);
    filemenu = built.at("&File");
    filemenu->addSeparator();
    refreshmenus();
}

static void refreshrecent() {
    const auto& files = recentfiles();
    for (std::size_t i = recentactions.size(); i < files.size(); ++i) {
        QAction* const action = filemenu->addAction(qname(files[i]).replace("&", "&&"));
        action->setObjectName(QString("mnuFileArray(%1)").arg(i));
        QObject::connect(action, &QAction::triggered,
                         guardedcommand("Open", [i] { openrecent(int(i)); }));
        recentactions.push_back(action);
    }
}

// During an analysis, and while a dialog waits for a selection, nothing may change the model or its
// files; shortcuts stay away with the menus.
static bool islocked(const std::string& path) {
    static const char* const locked[] = {"&File",   "&Edit",    "&Add",
                                         "&Define", "A&nalyse", "&Post-Process"};
    const std::string first = path.substr(0, path.find('|'));
    return (menulock || isselectionpending() || singleel) &&
           std::ranges::any_of(locked, [&](const char* name) { return first == name; });
}

void refreshmenus() {
    for (menurow& row : menus()) {
        if (row.action == nullptr) continue;
        if (row.checked) row.action->setChecked(row.checked());
        row.action->setEnabled(row.run && (!row.enabled || row.enabled()) && !islocked(row.menu));
    }
    for (const auto& [path, menu] : built) menu->menuAction()->setEnabled(!islocked(path));
    refreshrecent();
    for (QAction* action : recentactions) action->setEnabled(!islocked("&File"));
}

QAction* menuaction(const char* array, int index) {
    for (const menurow& row : menus())
        if (row.index == index && std::strcmp(row.array, array) == 0) return row.action;
    return nullptr;
}

static QString plain(QString caption) {
    return caption.replace("&&", "\1").remove('&').replace("\1", "&").trimmed();
}

// Captions hold "/" themselves ("Drag/Drop"), so every caption that begins the path is tried.
static QAction* findin(const QList<QAction*>& actions, const QString& path) {
    for (QAction* action : actions) {
        const QString caption = plain(action->text());
        if (caption.isEmpty()) continue;
        if (path.trimmed() == caption && !action->menu()) return action;
        if (action->menu() && path.startsWith(caption + "/"))
            if (QAction* const found =
                    findin(action->menu()->actions(), path.mid(caption.size() + 1)))
                return found;
    }
    return nullptr;
}

QAction* findmenu(QMenuBar* bar, const QString& path) {
    return findin(bar->actions(), path);
}

// --- pop-ups ------------------------------------------------------------------------------------

// A pop-up item that does what a menu item does.
static void addlike(QMenu* menu, const char* array, int index, const QString& caption,
                    const QString& name) {
    QAction* const source = menuaction(array, index);
    QAction* const item = menu->addAction(source->icon(), caption);
    item->setObjectName(name);
    item->setEnabled(source->isEnabled());
    item->setCheckable(source->isCheckable());
    item->setChecked(source->isChecked());
    QObject::connect(item, &QAction::triggered, source, &QAction::trigger);
}

static QMenu* addingpopup(QWidget* parent) {
    auto* const menu = new QMenu(parent);
    QMenu* const graphics = menu->addMenu("Add Graphics");
    addlike(graphics, "Mnugraphicitem", 0, "Line", "grapop(0)");
    graphics->addSeparator();
    addlike(graphics, "Mnugraphicitem", 1, "Circle", "grapop(2)");
    addlike(graphics, "Mnugraphicitem", 2, "Curve", "grapop(3)");
    graphics->addSeparator();
    QAction* const options = graphics->addAction("Options...");
    options->setObjectName("grapop(5)");
    QObject::connect(options, &QAction::triggered,
                     [] { theplatform().showdialog("graphoptions"); });
    addlike(menu, "Mnuadditem", 1, "Add Nodes", "popItem01(1)");
    addlike(menu, "Mnuadditem", 2, "Add elements", "popItem01(2)");
    menu->addSeparator();
    addlike(menu, "MnuSelectItem", 0, "Select Nodes", "popItem01(4)");
    addlike(menu, "MnuSelectItem", 1, "Select Elements", "popItem01(5)");
    addlike(menu, "MnuSelectItem", 2, "Select Patches", "popItem01(6)");
    addlike(menu, "MnuSelectItem", 4, "Select Graphics", "popItem01(7)");
    return menu;
}

static QMenu* editingpopup(QWidget* parent) {
    auto* const menu = new QMenu(parent);
    addlike(menu, "mnuEditItem", 3, "Copy", "popItem02(0)");
    addlike(menu, "mnuEditItem", 4, "Paste", "popItem02(1)");
    addlike(menu, "mnuEditItem", 6, "Move", "popItem02(2)");
    addlike(menu, "mnuEditItem", 1, "Delete", "popItem02(3)");
    menu->addSeparator();
    QMenu* const modify = menu->addMenu("Modify Selection");
    const auto add = [&](const char* caption, int i, bool enabled, std::function<void()> run) {
        QAction* const item = modify->addAction(caption);
        item->setObjectName(QString("modifypop(%1)").arg(i));
        item->setEnabled(enabled && !menulock);
        QObject::connect(item, &QAction::triggered, guardedcommand(caption, std::move(run)));
    };
    const bool any = nodesel(0) != 0 || elemsel(0) != 0;
    add("Nodal Loads or Constraints", 0, any, [] { startattributes(attributemodes::constraints); });
    add("Element Loads", 1, elemsel(0) != 0, [] { startattributes(attributemodes::elementloads); });
    add("Element properties", 2, elemsel(0) != 0, modifyselection);
    add("Graphic Properties", 3, graphsel(0, 0) != 0, modifyselection);
    return menu;
}

QMenu* popupmenu(int which, QWidget* parent) {
    QMenu* const menu = which == 1 ? addingpopup(parent) : editingpopup(parent);
    menu->setObjectName(which == 1 ? "popup01" : "popup02");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QAction* item : menu->actions()) item->setEnabled(item->isEnabled() && !menulock);
    return menu;
}
