// SPDX-License-Identifier: GPL-3.0-or-later
// The table of dialogs.
#include "ui/dialogs.h"

#include <QApplication>
#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <map>
#include <optional>

#include "core/platform.h"
#include "edit/Mouseprocedures.h"
#include "ui/controlnames.h"
#include "ui/controls.h"
#include "ui/helpwindow.h"
#include "ui/mainwindow.h"
#include "ui/windowsettings.h"

static std::map<std::string, std::function<QDialog*()>>& makers() {
    static std::map<std::string, std::function<QDialog*()>> table;
    return table;
}

void adddialog(const std::string& name, std::function<QDialog*()> make) {
    makers()[name] = std::move(make);
}

void wiredialogs() {
    adddialog("setmem", makesetmem);
    adddialog("Aoptions", makeaoptions);
    adddialog("frmAbout", makeabout);
    adddialog("Info", makeinfo);
    adddialog("modelinfo", makemodelinfo);
    adddialog("viewcontrol", makeviewcontrol);
    adddialog("Colorset", makecolorset);
    adddialog("Symbols", makesymbols);
    adddialog("Options", makeoptions);
    adddialog("cardhelp", makecardhelp);
    adddialog("Loadkees", makeloadkees);
    adddialog("Loadcombinations", makeloadcombinations);
    adddialog("nodeattributes", makenodeattributes);
    adddialog("defgroup", makedefgroup);
    adddialog("Roptions", makeroptions);
    adddialog("Soptions", makesoptions);
    adddialog("placenodes", makeplacenodes);
    adddialog("graphoptions", makegraphoptions);
    adddialog("Mselect", makemselect);
    adddialog("mesh2d", makemesh2d);
    adddialog("patchedit", makepatchedit);
    adddialog("Objects", makeobjects);
    adddialog("Defobject", makedefobject);
    adddialog("modifyelem", makemodifyelem);
    adddialog("checkmodel", makecheckmodel);
    adddialog("addsingleelem", makeaddsingleelem);
    adddialog("Numint", makenumint);
    adddialog("drafttool", makedrafttool);
    adddialog("importreport", makeimportreport);
    adddialog("Toptions", maketoptions);
    adddialog("DXFInterface", makedxf);
    adddialog("MosesSettings", makemosessettings);
    adddialog("needs", makeneeds);
    adddialog("Cut", makecutwindow);
    adddialog("Animation", makeanimation);
    adddialog("Compare", makecompare);
    adddialog("Book", makebookdialog);
    adddialog("plygroup", makeplygroup);
    adddialog("resulttables", makeresulttables);
    adddialog("viewpicture", makeviewpicture);
    wirepictures();
    adddialog("Selectby", makeselectby);
    adddialog("Mouse", makemousedialog);
    adddialog("Demonstrations", makedemonstrations);
    adddialog("memberdiagrams", makememberdiagrams);
    adddialog("memberwindow", makememberwindow);
    adddialog("balance", makebalance);
    adddialog("resultsof", makeresultsof);
    adddialog("combinationrules", makecombinationrules);
    adddialog("Units", makeunits);
}

std::vector<std::string> dialognames() {
    std::vector<std::string> names;
    for (const auto& [name, make] : makers()) names.push_back(name);
    return names;
}

QPushButton* newaction(const char* name, const char* caption, QWidget* parent, QBoxLayout* row,
                       std::function<void()> pressed) {
    QPushButton* const b = newbutton(name, caption, parent, row);
    b->setAutoDefault(false);
    QObject::connect(b, &QPushButton::clicked, parent,
                     guardedhandler([pressed](bool) { pressed(); }));
    return b;
}

void tellfault(const runtimeerror& fault) {
    theplatform().message(fault.what + " (error " + std::to_string(fault.number) + ")",
                          icons::critical);
}

void fallback(const runtimeerror& fault) {
    guarded(addready, [](const runtimeerror&) {});  // what failed may fail again in a redraw
    tellfault(fault);
}

static const char* const placed = "placed";  // property: it stays where the user has it
static const char* const fitted = "fitted";  // property: its size was found

void sidedialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (property(placed).toBool()) return;
    setProperty(placed, true);
    const int gap = 24;  // pixels
    const QRect window = themainwindow->frameGeometry();
    move(window.right() - width() - gap, window.center().y() - height() / 2);
}

namespace {
// A window that is hidden and shown again comes back where it stood. Left to the toolkit it would
// come back with its inside where its frame was, and walk down by a title bar each time.
class keptplace : public QObject {
  public:
    explicit keptplace(QDialog* dialog) : QObject(dialog) {
        dialog->installEventFilter(this);
        if (restoredialog(*dialog)) dialog->setProperty(placed, true);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        // None any more while it comes apart.
        auto* const dialog = qobject_cast<QDialog*>(watched);
        if (!dialog || event->spontaneous()) return false;
        if (event->type() == QEvent::Hide) {
            place = dialog->pos();
            rememberdialog(*dialog);
        }
        if (event->type() == QEvent::Show && place) dialog->move(*place);
        return false;
    }

  private:
    std::optional<QPoint> place;
};
}  // namespace

selectionwait::selectionwait(Flag& f, std::function<void()> ended) : flag(f) {
    pendingselections().push_back({&flag, std::move(ended)});
}

void selectionwait::end() {
    std::erase_if(pendingselections(),
                  [this](const pendingselection& p) { return p.flag == &flag; });
    flag = false;
}

// Where large letters make a window larger than the screen its inside is scrolled.
static void scrollinside(QDialog* dialog) {
    auto* const inside = new QWidget(dialog);
    inside->setLayout(dialog->layout());
    auto* const area = new QScrollArea(dialog);
    area->setWidget(inside);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    auto* const rows = new QVBoxLayout(dialog);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(area);
    dialog->setMinimumSize(0, 0);
    const int bar = area->verticalScrollBar()->sizeHint().width();
    dialog->resize(inside->sizeHint() + QSize(bar, bar));
}

// Of tabs the toolkit counts the lines of the page on top alone.
static void makepageshigh(const QDialog* dialog, int width) {
    const int borders = 40;  // pixels beside a page
    for (const auto* tabs : dialog->findChildren<QTabWidget*>())
        for (int i = 0; i < tabs->count(); ++i)
            if (QWidget* const page = tabs->widget(i); page->hasHeightForWidth())
                page->setMinimumHeight(page->heightForWidth(width - borders));
}

// The toolkit gives a window two thirds of the screen at most, which leaves the model in sight. But
// it holds a least size of its own against that of its controls, and does not count the lines into
// which its width breaks a text.
static void fittoscreen(QDialog* dialog) {
    QLayout* const rows = dialog->layout();
    if (!rows || dialog->property(fitted).toBool()) return;
    dialog->setProperty(fitted, true);
    dialog->ensurePolished();
    rows->activate();
    const QSize around(16, 48);  // pixels of a frame with its title
    const QSize room = dialog->screen()->availableSize() - around;
    const bool chosen = dialog->testAttribute(Qt::WA_Resized);
    const QSize usual = rows->totalSizeHint().boundedTo(dialog->screen()->availableSize() * 2 / 3);
    QSize size = (chosen ? dialog->size() : usual).expandedTo(rows->totalMinimumSize());
    makepageshigh(dialog, size.width());
    QSize least = rows->totalMinimumSize();
    size = size.expandedTo(least);
    size = size.expandedTo(dialog->minimumSize());
    if (rows->hasHeightForWidth()) {
        const int width = std::min(size.width(), room.width());
        least.setHeight(std::max(least.height(), rows->totalHeightForWidth(width)));
        size = size.expandedTo(least);
    }
    if (least.width() > room.width() || least.height() > room.height())
        scrollinside(dialog);
    else
        dialog->setMinimumSize(dialog->minimumSize().expandedTo(least));
    dialog->resize(size.boundedTo(room));
}

void showmodal(QDialog* dialog) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const bool free = themainwindow && themainwindow->property(freewindows).toBool();
    if (!free && !dialog->property(besidemain).toBool())
        dialog->setWindowModality(Qt::ApplicationModal);
    namecontrols(dialog);
    givekeys(dialog);
    helpbykey(dialog);
    fittoscreen(dialog);
    dialog->show();
}

// A dialog that stays beside the main window may be open already.
static bool raiseopen(const std::string& name) {
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!w->isVisible() || w->objectName().toStdString() != name) continue;
        w->raise();
        w->activateWindow();
        return true;
    }
    return false;
}

bool opendialog(const std::string& name) {
    if (raiseopen(name) || endpendingselection()) return true;  // the one that waits comes back
    const auto found = makers().find(name);
    if (found == makers().end()) return false;
    QDialog* const dialog = found->second();
    dialog->setObjectName(QString::fromStdString(name));
    new keptplace(dialog);
    showmodal(dialog);
    return true;
}

void addokcancel(QDialog* dialog, QBoxLayout* rows, std::function<void()> take) {
    auto* const row = new QHBoxLayout;
    row->addStretch(1);
    QPushButton* const ok = newbutton("Command1", "OK", dialog, row);
    ok->setDefault(true);
    QObject::connect(ok, &QPushButton::clicked, dialog,
                     guardedhandler([take = std::move(take)](bool) { take(); }));
    QObject::connect(newbutton("Command2", "Cancel", dialog, row), &QPushButton::clicked, dialog,
                     &QDialog::reject);
    rows->addLayout(row);
}
