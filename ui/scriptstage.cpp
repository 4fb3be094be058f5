// SPDX-License-Identifier: GPL-3.0-or-later
// A script on stage. State: whether one plays.
#include "ui/scriptstage.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDialog>
#include <QFileInfo>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <deque>
#include <functional>

#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/script.h"

namespace {

// The text at the foot of the window, with the button that ends the play.
class textstrip : public QFrame {
  public:
    explicit textstrip(std::function<void()> stop) : QFrame(themainwindow) {
        setObjectName("demotext");
        setFrameShape(QFrame::StyledPanel);
        setAutoFillBackground(true);
        setBackgroundRole(QPalette::ToolTipBase);
        auto* const row = new QHBoxLayout(this);
        text = new QLabel(this);
        text->setWordWrap(true);
        text->setForegroundRole(QPalette::ToolTipText);
        QFont font = text->font();
        font.setPointSizeF(font.pointSizeF() * 1.25);
        text->setFont(font);
        row->addWidget(text, 1);
        ending = new QPushButton(tr("Stop (Esc)"), this);
        ending->setFocusPolicy(Qt::NoFocus);
        row->addWidget(ending, 0, Qt::AlignVCenter);
        connect(ending, &QPushButton::clicked, this, stop);
    }
    void say(const QString& words) {
        const int width = std::min(900, themainwindow->width() - 40), gap = 70;  // pixels
        text->setText(words);
        setFixedWidth(width);
        layout()->activate();
        setFixedHeight(std::max(64, layout()->heightForWidth(width)));
        move((themainwindow->width() - width) / 2, themainwindow->height() - height() - gap);
        show();
        raise();
    }
    QPushButton* ending;

  private:
    QLabel* text;
};

// Keeps the user's own mouse and keys out while the script plays. What the script sends is not
// spontaneous and goes through.
class inputrest : public QObject {
  public:
    inputrest(stageplay::keydoor key, const QWidget* panel, stageplay::pressdoor press)
        : onkey(std::move(key)), allowed(panel), onpress(std::move(press)) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!event->spontaneous() || !watched->isWidgetType() || isallowed(watched)) return false;
        switch (event->type()) {
            case QEvent::KeyPress:
                onkey(static_cast<QKeyEvent*>(event)->key());
                return true;
            case QEvent::Close:
                onkey(Qt::Key_Escape);
                event->ignore();
                return true;
            case QEvent::MouseButtonPress:
                // An open menu has the mouse of the whole screen.
                if (onpress) onpress(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
                return true;
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseMove:
            case QEvent::Wheel:
            case QEvent::ContextMenu:
            case QEvent::KeyRelease:
            case QEvent::ShortcutOverride:
                return true;
            default:
                return false;
        }
    }

  private:
    bool isallowed(QObject* watched) const {
        const auto* const w = static_cast<const QWidget*>(watched);
        if (w == allowed || allowed->isAncestorOf(w)) return true;
        // The list that a box of the panel has opened.
        const QWidget* const above = w->window()->parentWidget();
        return above && allowed->isAncestorOf(above);
    }
    stageplay::keydoor onkey;
    const QWidget* allowed;
    stageplay::pressdoor onpress;
};

// Answers of the script go into queues of their own.
class ownqueues {
  public:
    ownqueues() : scripted(theqtplatform().scripted) {
        theqtplatform().answerqueue.swap(answered);
        theqtplatform().filequeue.swap(files);
        theqtplatform().scripted = true;
    }
    ~ownqueues() {
        theqtplatform().answerqueue.swap(answered);
        theqtplatform().filequeue.swap(files);
        theqtplatform().scripted = scripted;
        theqtplatform().unanswered.clear();
    }
    ownqueues(const ownqueues&) = delete;
    ownqueues& operator=(const ownqueues&) = delete;

  private:
    bool scripted;
    std::deque<answers> answered;
    std::deque<std::string> files;
};

}  // namespace

struct stageplay::parts {
    inputrest rest;
    ownqueues queues;
};

stageplay::stageplay(keydoor onkey, const QWidget* panel, pressdoor onpress)
    : held(new parts{{std::move(onkey), panel, std::move(onpress)}, {}}) {
    themainwindow->setProperty(freewindows, true);
}

stageplay::~stageplay() {
    themainwindow->setProperty(freewindows, false);
}

static void closedialogs() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible())
            dialog->close();
}

std::string playonstage(const std::string& script, bool pauses) {
    static bool playing;
    if (playing) return "a script is being played already";
    playing = true;
    scriptplayer player;
    textstrip strip([&] { player.stopped = true; });
    const auto onkey = [&](int key) {
        if (key == Qt::Key_Escape) player.stopped = true;
    };
    const inputrest rest(onkey, strip.ending, {});
    player.pauses = pauses;
    player.say = [&](const QString& words) { strip.say(words); };
    if (!pauses) strip.say("Playing " + QFileInfo(QString::fromStdString(script)).fileName());
    bool good = false;
    {
        const ownqueues queues;
        good = player.load(QString::fromStdString(script)) && player.play();
        if (!good) closedialogs();
    }
    playing = false;
    return good || player.stopped ? "" : player.fault.toStdString();
}
