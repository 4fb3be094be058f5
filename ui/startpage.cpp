// SPDX-License-Identifier: GPL-3.0-or-later
// The start page.
#include "ui/startpage.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>
#include <algorithm>

#include "core/model.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "ui/actions.h"
#include "ui/controls.h"
#include "ui/examples.h"
#include "ui/icons.h"

static const QSize picturesize(112, 74);
static const int columns = 5;
static const std::size_t mostrecent = 5;

static void runnamed(const char* name) {
    if (const action* const row = findaction(name)) runaction(*row);
}

static QLabel* newheading(const QString& text, QWidget* parent) {
    auto* const heading = new QLabel(text, parent);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    return heading;
}

// Enter presses what the keyboard is at, as Space does.
static QToolButton* newtool(const QString& caption, QWidget* parent) {
    auto* const b = new QToolButton(parent);
    b->setText(caption);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::StrongFocus);
    b->setCursor(Qt::PointingHandCursor);
    return b;
}

startpage::startpage(QWidget* view) : QFrame(view) {
    setObjectName("startpage");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(newheading(tr("The model is empty. Begin with"), this));
    auto* const ways = new QHBoxLayout;
    rows->addLayout(ways);
    addway(ways, "newdrawing", "graphic", tr("New drawing"), [] {
        runnamed("viewtool(5)");  // lines are drawn in the plane x y
        runnamed("Mnugraphicitem(0)");
    });
    addway(ways, "openmodel", "open", tr("Open..."), [] { runnamed("mnuFileItem(1)"); });
    addway(ways, "demonstrations", "demo", tr("Demonstrations"), [] { runnamed("demo01(0)"); });
    ways->addStretch(1);
    addexamples(rows);
    recent = new QWidget(this);
    auto* const list = new QVBoxLayout(recent);
    list->setContentsMargins(0, 0, 0, 0);
    list->setSpacing(0);
    list->addWidget(newheading(tr("Recent"), recent));
    rows->addWidget(recent);
    view->installEventFilter(this);
    for (QToolButton* b : findChildren<QToolButton*>()) b->installEventFilter(this);
}

QToolButton* startpage::addway(QBoxLayout* row, const char* name, const char* icon,
                               const QString& caption, void (*go)()) {
    QToolButton* const b = newtool(caption, this);
    b->setObjectName(name);
    b->setIcon(iconof(icon));
    b->setIconSize(QSize(24, 24));
    b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(b, &QToolButton::clicked, this, [go](bool) { go(); });
    row->addWidget(b);
    return b;
}

// The examples as they were shipped; a click opens the user's copy.
void startpage::addexamples(QBoxLayout* rows) {
    pictures = new QWidget(this);
    auto* const grid = new QGridLayout(pictures);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(newheading(tr("Examples"), pictures), 0, 0, 1, columns);
    const QString data = qtext(shippeddata());
    int i = 0;
    for (const QString& file :
         QDir(data + "/examples").entryList({"*.tek"}, QDir::Files, QDir::Name)) {
        const QString name = QFileInfo(file).completeBaseName();
        QToolButton* const b = newtool(name, pictures);
        b->setObjectName("example(" + name + ")");
        QPixmap picture(data + "/start/" + name + ".png");
        b->setIcon(picture.isNull() ? iconof("mesh") : QIcon(picture));
        b->setIconSize(picturesize);
        b->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        b->setToolTip(tr("Opens your copy of the example %1, which can be saved").arg(name));
        connect(b, &QToolButton::clicked, this,
                [file](bool) { openpointed(examplesfolder() + "/" + file.toStdString()); });
        grid->addWidget(b, 1 + i / columns, i % columns);
        ++i;
    }
    rows->addWidget(pictures);
}

void startpage::takefocus() {
    if (isVisible()) findChild<QToolButton*>("newdrawing")->setFocus();
}

// The last ones, the newest first.
void startpage::showrecent() {
    const std::vector<std::string>& files = recentfiles();
    if (files == recentshown) return;
    recentshown = files;
    for (QToolButton* b : recentbuttons) b->deleteLater();
    recentbuttons.clear();
    for (std::size_t k = 0; k < std::min(mostrecent, files.size()); ++k) {
        const std::size_t i = files.size() - 1 - k;
        const QString path = qname(files[i]);
        QToolButton* const b =
            newtool(QFileInfo(path).fileName() + "   " + QFileInfo(path).path(), recent);
        b->setObjectName(QString("recent(%1)").arg(k));
        b->setText(fontMetrics().elidedText(b->text(), Qt::ElideMiddle, columns * 110));
        b->setToolTip(path);
        b->installEventFilter(this);
        connect(b, &QToolButton::clicked, this, [i](bool) { openpointed(pathofrecent(i)); });
        recent->layout()->addWidget(b);
        recentbuttons.push_back(b);
    }
}

void startpage::refresh() {
    const bool empty = nnodes() == 0 && ngraphics() == 0 && runningmode() == nullptr && !menulock;
    if (!empty) {
        if (isAncestorOf(QApplication::focusWidget())) parentWidget()->setFocus();
        return hide();
    }
    showrecent();
    place();
    show();
}

bool startpage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) place();
    if (watched == parentWidget() || event->type() != QEvent::KeyPress) return false;
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            static_cast<QToolButton*>(watched)->click();
            return true;
        case Qt::Key_Left:
        case Qt::Key_Up:
            return focusPreviousChild();
        case Qt::Key_Right:
        case Qt::Key_Down:
            return focusNextChild();
        default:
            return false;
    }
}

// In the middle; in a small view without what does not fit.
void startpage::place() {
    const QSize room = parentWidget()->size() - QSize(40, 40);
    recent->setVisible(!recentbuttons.empty());
    pictures->setVisible(true);
    const auto fits = [&] {
        layout()->activate();
        const QSize size = sizeHint();
        return size.width() <= room.width() && size.height() <= room.height();
    };
    if (!fits()) recent->hide();
    if (!fits()) pictures->hide();
    adjustSize();
    move((parentWidget()->width() - width()) / 2, (parentWidget()->height() - height()) / 2);
}
