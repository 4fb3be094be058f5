// SPDX-License-Identifier: GPL-3.0-or-later
// The demonstration: a strip with the explaining text over the views, and the script player.
#include "ui/demonstration.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDialog>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <filesystem>
#include <memory>

#include "core/appdir.h"
#include "core/platform.h"
#include "core/session.h"
#include "edit/Mouseprocedures.h"
#include "files/filemenu.h"
#include "ui/examples.h"
#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/script.h"

namespace fs = std::filesystem;

namespace {

// The text at the foot of the window, with the button that ends the demonstration.
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
    inputrest(const QObject* button, std::function<void()> stop)
        : allowed(button), onstop(std::move(stop)) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!event->spontaneous() || !watched->isWidgetType() || watched == allowed) return false;
        switch (event->type()) {
            case QEvent::KeyPress:
                if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) onstop();
                return true;
            case QEvent::Close:
                onstop();
                event->ignore();
                return true;
            case QEvent::MouseButtonPress:
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
    const QObject* allowed;
    std::function<void()> onstop;
};

// Answers of the demonstration go into queues of their own.
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

static void closedialogs() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible())
            dialog->close();
}

static void play(const fs::path& script, bool pauses) {
    scriptplayer player;
    textstrip strip([&] { player.stopped = true; });
    const inputrest rest(strip.ending, [&] { player.stopped = true; });
    player.pauses = pauses;
    player.say = [&](const QString& words) { strip.say(words); };
    bool good = false;
    {
        const ownqueues queues;
        good = player.load(QString::fromStdString(script.string())) && player.play();
        if (!good) closedialogs();
    }
    addready();
    if (!good && !player.stopped)
        theplatform().message("The demonstration ended early: " + player.fault.toStdString(),
                              icons::exclamation);
}

void rundemo() {
    static bool running;
    static std::unique_ptr<QTemporaryDir> room;  // holds the models that stay open after it
    if (running) return;
    const fs::path data = shippeddata();
    if (data.empty()) {
        theplatform().message("The demonstration was not found: demo/tour.kds in " + appdir,
                              icons::exclamation);
        return;
    }
    if (menunew() != reply::done) return;
    room = std::make_unique<QTemporaryDir>();
    const fs::path copy = fs::path(room->path().toStdString()) / "data";
    for (const char* folder : {"demo", "examples"})
        copytree((data / folder).string(), (copy / folder).string());
    running = true;
    play(copy / "demo/tour.kds", !theqtplatform().scripted);
    running = false;
}
