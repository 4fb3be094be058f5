// SPDX-License-Identifier: GPL-3.0-or-later
// The clock of the copy, and the dialog of the copies that were left. State: the clock and how long
// the last copy took.
#include "ui/recovery.h"

#include <QApplication>
#include <QBoxLayout>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include "core/journal.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/filop.h"
#include "files/recovery.h"
#include "ui/controls.h"
#include "ui/dialogs.h"
#include "ui/mainwindow.h"
#include "view/moddraw.h"
#include "view/setviews.h"

static const int afterchange = 1000;  // milliseconds from a step to its copy
static const int whilebusy = 100;     // until the next try while a key or button is down
static const int longcopy = 200;      // a copy that takes longer waits for a pause in the work

namespace {

class recoveryclock : public QObject {
  public:
    recoveryclock() : QObject(qApp) {
        clock.setSingleShot(true);
        connect(&clock, &QTimer::timeout, this, [this] { keep(); });
        qApp->installEventFilter(this);
    }
    void changed() {
        if (!isunsaved()) {
            clock.stop();
            dropcopy();
        } else if (lasted > longcopy || !clock.isActive()) {
            clock.start(afterchange);
        }
    }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress && event->spontaneous()) keydown = true;
        if (event->type() == QEvent::KeyRelease || event->type() == QEvent::ApplicationDeactivate)
            keydown = false;
        return false;
    }

  private:
    void keep() {
        if (isstepopen() || keydown || QApplication::mouseButtons() != Qt::NoButton)
            return clock.start(whilebusy);
        QElapsedTimer time;
        time.start();
        writecopy();
        lasted = time.elapsed();
    }
    QTimer clock;
    qint64 lasted = 0;
    bool keydown = false;
};

recoveryclock* theclock;

// --- the offer ----------------------------------------------------------------------------------

class recoverydialog : public sidedialog {
  public:
    recoverydialog() : sidedialog(themainwindow), copies(findorphans()) {
        setWindowTitle(tr("Unsaved work"));
        setProperty(besidemain, true);
        auto* const rows = new QVBoxLayout(this);
        rows->addWidget(new QLabel(tr("The program ended without saving these models:"), this));
        list = new QListWidget(this);
        list->setObjectName("List1");
        for (const orphan& copy : copies)
            list->addItem(QString("%1, %2, %3 KB")
                              .arg(qname(copy.name.empty() ? "None" : copy.name),
                                   QString::fromStdString(copy.when))
                              .arg((copy.bytes + 1023) / 1024));
        list->setCurrentRow(0);
        list->setMinimumWidth(420);
        rows->addWidget(list);
        auto* const buttons = new QHBoxLayout;
        rows->addLayout(buttons);
        const auto add = [&](const char* name, const QString& text, const QString& tip, auto run) {
            auto* const b = new QPushButton(text, this);
            b->setObjectName(name);
            b->setToolTip(tip);
            b->setAutoDefault(false);
            buttons->addWidget(b);
            connect(b, &QPushButton::clicked, this, guardedhandler(run));
        };
        add("recover", tr("Recover"), tr("Goes on with this model; it counts as unsaved"),
            [this](bool) { recover(); });
        add("look", tr("Look at it"), tr("Shows the model and decides later"),
            [this](bool) { look(); });
        add("drop", tr("Drop"), tr("Removes the copy of this model"), [this](bool) { drop(); });
        add("later", tr("Later"), tr("Asks again at the next start"), [this](bool) { close(); });
    }

  private:
    bool present(const orphan& copy) {
        addready();
        if (!readcopy(copy)) return false;
        showmodelname();
        for (int i = deformedshape; i <= elementstress; ++i) menupostItem(i).checked = false;
        setscrollbars();
        theplatform().refresh();
        redrawall();
        return true;
    }
    // What the user has begun since the start is not to be lost for it.
    bool maychange() {
        return !isunsaved() || shown ||
               theplatform().yes("The model in hand is not saved. Replace it?");
    }
    void look() {
        const int row = list->currentRow();
        if (row >= 0 && maychange()) shown = present(copies[std::size_t(row)]);
    }
    void recover() {
        const int row = list->currentRow();
        if (row < 0 || !maychange() || !present(copies[std::size_t(row)])) return;
        // The copy of this process takes the place of the one that was left.
        if (writecopy()) removerow(row);
        shown = false;
        close();
    }
    void drop() {
        const int row = list->currentRow();
        if (row < 0 || !theplatform().yes("Drop the unsaved work of this model?")) return;
        removerow(row);
        if (copies.empty()) close();
    }
    void removerow(int row) {
        droporphan(copies[std::size_t(row)]);
        copies.erase(copies.begin() + row);
        delete list->takeItem(row);
    }
    std::vector<orphan> copies;
    QListWidget* list;
    bool shown = false;  // the model in hand is one of the copies
};

}  // namespace

void wirerecovery() {
    if (theclock) return;
    theclock = new recoveryclock;
    afterstep = [next = afterstep](bool stale) {
        if (next) next(stale);
        theclock->changed();
    };
}

void offerrecovery() {
    adddialog("recovery", [] { return new recoverydialog; });
    if (!findorphans().empty()) opendialog("recovery");
}

void endrecovery() {
    dropcopy();
}
