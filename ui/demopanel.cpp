// SPDX-License-Identifier: GPL-3.0-or-later
// The panel of a demonstration.
#include "ui/demopanel.h"

#include <QApplication>
#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <algorithm>

#include "ui/mainwindow.h"

static const double factors[] = {0.5, 1, 2, 4};
static const int framewidth = 3;  // pixels

namespace {
// A frame over a window's controls that lets the mouse through.
class framemark : public QWidget {
  public:
    framemark(QWidget* window, const QRect& about) : QWidget(window) {
        const QRect around =
            about.adjusted(-framewidth - 1, -framewidth - 1, framewidth + 1, framewidth + 1);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setGeometry(around);
        setMask(QRegion(rect()) -
                QRegion(rect().adjusted(framewidth, framewidth, -framewidth, -framewidth)));
        show();
        raise();
    }
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), QColor(235, 120, 0)); }
};
}  // namespace

demopanel::demopanel()
    : QFrame(themainwindow, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus) {
    setObjectName("demopanel");
    setWindowTitle(tr("Demonstration"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameShape(QFrame::Box);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    auto* const rows = new QVBoxLayout(this);
    text = new QLabel(this);
    text->setObjectName("demotext");
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setForegroundRole(QPalette::ToolTipText);
    QFont font = text->font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    text->setFont(font);
    rows->addWidget(text, 1);
    auto* const row = new QHBoxLayout;
    rows->addLayout(row);
    chaptertext = new QLabel(this);
    chaptertext->setForegroundRole(QPalette::ToolTipText);
    row->addWidget(chaptertext);
    row->addStretch(1);
    back = add(row, "demoback", tr("Back"));
    pause = add(row, "demopause", tr("Pause"));
    pause->setCheckable(true);
    next = add(row, "demonext", tr("Next"));
    speeds = new QComboBox(this);
    speeds->setObjectName("demospeed");
    speeds->setFocusPolicy(Qt::NoFocus);
    speeds->addItems({tr("Slow"), tr("Normal"), tr("Fast"), tr("Very fast")});
    speeds->setCurrentIndex(1);
    speeds->setAccessibleName(tr("Speed"));
    row->addWidget(speeds);
    stop = add(row, "demostop", tr("Stop"));
    back->setToolTip(tr("To the text before (Left)"));
    pause->setToolTip(tr("Waits here, or goes on (Space)"));
    next->setToolTip(tr("To the next text (Right)"));
    stop->setToolTip(tr("Ends the demonstration (Esc)"));
    connect(back, &QPushButton::clicked, this, [this] { onback(); });
    connect(next, &QPushButton::clicked, this, [this] { onnext(); });
    connect(stop, &QPushButton::clicked, this, [this] { onstop(); });
    connect(pause, &QPushButton::toggled, this,
            [this](bool on) { pause->setText(on ? tr("Go on") : tr("Pause")); });
}

demopanel::~demopanel() {
    delete marker;
}

QPushButton* demopanel::add(QBoxLayout* row, const char* name, const QString& caption) {
    auto* const b = new QPushButton(caption, this);
    b->setObjectName(name);
    b->setFocusPolicy(Qt::NoFocus);
    row->addWidget(b);
    return b;
}

bool demopanel::paused() const {
    return pause->isChecked();
}

double demopanel::speed() const {
    return factors[speeds->currentIndex()];
}

void demopanel::togglepause() {
    pause->toggle();
}

void demopanel::say(const QString& words, int chapter, int chapters) {
    const int width = 440;  // pixels
    text->setText(words);
    chaptertext->setText(tr("%1 of %2").arg(chapter).arg(chapters));
    setFixedWidth(width);
    layout()->activate();
    setFixedHeight(std::max(90, layout()->heightForWidth(width)));
    if (!isVisible()) {
        const QRect window = themainwindow->frameGeometry();
        move(window.center().x() - width / 2, window.bottom() - height() - 90);
        show();
    }
    raise();
}

void demopanel::pointatnothing() {
    delete marker;
    raise();
}

void demopanel::pointat(QWidget* at, QRect part) {
    delete marker;
    if (part.isNull()) part = at->rect();
    const QRect inwindow(at->mapTo(at->window(), part.topLeft()), part.size());
    marker = new framemark(at->window(), inwindow);
    placebeside(QRect(at->mapToGlobal(part.topLeft()), part.size()));
    raise();
}

// Below what is framed, else above, right or left of it: where the screen has room; a large part is
// covered at its foot.
void demopanel::placebeside(const QRect& global) {
    const int gap = 14;
    const QScreen* const screen = themainwindow->screen();
    const QRect room = screen->availableGeometry().adjusted(4, 4, -4, -4);
    const int x =
        std::clamp(global.center().x() - width() / 2, room.left(), room.right() - width());
    const int y =
        std::clamp(global.center().y() - height() / 2, room.top(), room.bottom() - height());
    const QPoint places[] = {{x, global.bottom() + gap},
                             {x, global.top() - gap - height()},
                             {global.right() + gap, y},
                             {global.left() - gap - width(), y}};
    for (const QPoint& place : places)
        if (room.contains(QRect(place, size()))) return move(place);
    move(x, std::min(global.bottom(), room.bottom()) - height() - gap);
}

bool demopanel::presses(const QPoint& global) {
    for (QPushButton* b : {back, pause, next, stop}) {
        if (!b->rect().contains(b->mapFromGlobal(global))) continue;
        b->click();
        return true;
    }
    return false;
}
