// SPDX-License-Identifier: GPL-3.0-or-later
// The menu bar and the pop-ups, built from the table of actions.
#include "ui/menus.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <map>

#include "core/session.h"
#include "files/filemenu.h"
#include "ui/controls.h"
#include "ui/examples.h"
#include "ui/helpwindow.h"
#include "ui/record.h"

// --- the menu bar -------------------------------------------------------------------------------

static QMenu* filemenu;
static std::map<std::string, QMenu*> built;
static std::vector<QAction*> recentactions;

// Of an item, which in a pop-up has a name of its own. Null for a file of the recent list.
static const action* actionof(const QAction& item) {
    const std::string name = item.objectName().toStdString();
    for (const action& row : actions()) {
        if (row.name == name) return &row;
        for (const actionplace& place : row.places)
            if (*place.name && place.name == name) return &row;
    }
    return nullptr;
}

namespace {
// An open menu keeps the keys of the window to itself.
class menuhelp : public QObject {
  public:
    explicit menuhelp(QMenu* menu) : QObject(menu) { menu->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        if (static_cast<QKeyEvent*>(event)->key() != Qt::Key_F1) return false;
        const QAction* const item = static_cast<QMenu*>(watched)->activeAction();
        const action* const row = item ? actionof(*item) : nullptr;
        while (QWidget* const open = QApplication::activePopupWidget()) open->close();
        const recordedline line(helpline);
        if (row)
            helpat("do-" + row->name, row->topic);
        else
            helpat("window");
        return true;
    }
};
}  // namespace

static QMenu* menuat(QMenuBar* bar, const std::string& path) {
    if (const auto found = built.find(path); found != built.end()) return found->second;
    const std::size_t cut = path.rfind('|');
    QMenu* const made = cut == path.npos
                            ? bar->addMenu(QString::fromStdString(path))
                            : menuat(bar, path.substr(0, cut))
                                  ->addMenu(QString::fromStdString(path.substr(cut + 1)));
    new menuhelp(made);
    built[path] = made;
    return made;
}

// "&Loads" of the draw list and "Loads", "Graphics" of the Add menu carry a submenu; all other rows
// are plain items.
static void addtomenu(QMenuBar* bar, action& row) {
    QMenu* const menu = menuat(bar, row.menu);
    if (*row.caption == 0) {
        menu->addSeparator();
        return;
    }
    menu->addAction(makeitem(row, menu));
    menu->setToolTipsVisible(true);
}

void buildmenus(QMenuBar* bar) {
    built.clear();
    recentactions.clear();
    for (action& row : actions())
        if (*row.menu) addtomenu(bar, row);
    filemenu = built.at("&File");
    filemenu->addSeparator();
    refreshmenus();
}

static void refreshrecent() {
    const auto& files = recentfiles();
    for (std::size_t i = recentactions.size(); i < files.size(); ++i) {
        QAction* const item = filemenu->addAction(qname(files[i]).replace("&", "&&"));
        item->setObjectName(QString("mnuFileArray(%1)").arg(i));
        QObject::connect(item, &QAction::triggered, item, [i] { openpointed(pathofrecent(i)); });
        recentactions.push_back(item);
    }
}

void refreshmenus() {
    for (const action& row : actions()) {
        if (!row.item) continue;
        if (row.checked) row.item->setChecked(row.checked());
        showallowed(row);
    }
    for (const auto& [path, menu] : built) menu->menuAction()->setEnabled(!islocked(path));
    refreshrecent();
    for (QAction* item : recentactions) item->setEnabled(!islocked("&File"));
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

std::vector<placedaction> actionsat(const QString& where) {
    std::vector<placedaction> found;
    for (action& row : actions())
        for (const actionplace& place : row.places)
            if (where == place.where || QString(place.where).startsWith(where + "/"))
                found.push_back({&row, &place});
    std::ranges::stable_sort(found, {}, [](const placedaction& p) { return p.place->order; });
    return found;
}

// The menu at the end of a path of captions, and a line where another ten begins in it.
static QMenu* popupat(QMenu* root, const QStringList& captions, int order) {
    QMenu* menu = root;
    const char* const last = "order";
    for (const QString& caption : captions) {
        QMenu* inner = menu->findChild<QMenu*>(caption, Qt::FindDirectChildrenOnly);
        if (!inner) {
            popupat(menu, {}, order);
            inner = menu->addMenu(caption);
            inner->setObjectName(caption);
            new menuhelp(inner);
        }
        menu = inner;
    }
    const QVariant before = menu->property(last);
    if (before.isValid() && before.toInt() / 10 != order / 10) menu->addSeparator();
    menu->setProperty(last, order);
    return menu;
}

// A pop-up item does what the action does, and looks as it does.
static void addlike(QMenu* menu, const action& row, const actionplace& place) {
    if (!row.item) return;
    const QString caption = *place.caption ? QString(place.caption) : row.item->text();
    QAction* const item = menu->addAction(row.item->icon(), caption);
    item->setObjectName(*place.name ? QString(place.name) : row.item->objectName());
    item->setEnabled(row.item->isEnabled());
    item->setCheckable(row.item->isCheckable());
    item->setChecked(row.item->isChecked());
    QObject::connect(item, &QAction::triggered, row.item, &QAction::trigger);
}

QMenu* popupmenu(int which, QWidget* parent) {
    const QString name = which == 1 ? "popup01" : "popup02";
    auto* const menu = new QMenu(parent);
    menu->setObjectName(name);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    new menuhelp(menu);
    refreshmenus();
    for (const auto& [row, place] : actionsat(name)) {
        const QStringList captions = QString(place->where).split('/').mid(1);
        addlike(popupat(menu, captions, place->order), *row, *place);
    }
    for (QAction* item : menu->actions()) item->setEnabled(item->isEnabled() && !menulock);
    return menu;
}
