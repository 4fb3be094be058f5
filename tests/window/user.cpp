// SPDX-License-Identifier: GPL-3.0-or-later
// Keys and mouse by xdotool, and the frame of the tests: the window's thread is the program's, the
// tests run in the user's.
#include "tests/window/user.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "ui/mainwindow.h"
#include "ui/qtplatform.h"
#include "ui/startup.h"

void start(std::function<void()> action) {
    QMetaObject::invokeMethod(qApp, std::move(action), Qt::QueuedConnection);
}

void until(const std::string& what, const std::function<bool()>& holds) {
    const auto patience = std::chrono::seconds(60), look = std::chrono::seconds(0);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!ask(holds)) {
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("not seen: " + what);
        std::this_thread::sleep_for(look + std::chrono::milliseconds(10));
    }
}

static void xdotool(const QStringList& words) {
    if (QProcess::execute("xdotool", words) != 0)
        throw std::runtime_error("xdotool " + words.join(' ').toStdString());
}

void key(const std::string& name) {
    xdotool({"key", QString::fromStdString(name)});
}

void typetext(const std::string& text) {
    xdotool({"type", QString::fromStdString(text)});
}

QWidget* active() {
    QWidget* const popup = QApplication::activePopupWidget();
    return popup ? popup : QApplication::activeWindow();
}

static QWidget* findwidget(const std::string& name) {
    for (QWidget* window : {active(), static_cast<QWidget*>(themainwindow)}) {
        auto* const w =
            window ? window->findChild<QWidget*>(QString::fromStdString(name)) : nullptr;
        if (w && w->isVisible() && w->isEnabled()) return w;
    }
    return nullptr;
}

static QPoint middleof(const std::string& name) {
    until("the control " + name, [&] { return findwidget(name) != nullptr; });
    return ask([&] {
        const QWidget* const w = findwidget(name);
        return w->mapToGlobal(w->rect().center());
    });
}

static QStringList moveto(const QPoint& at) {
    return {"mousemove", QString::number(at.x()), QString::number(at.y())};
}

void click(const std::string& name, mousebutton button) {
    xdotool(moveto(middleof(name)) + QStringList{"click", QString::number(int(button))});
}

void drag(const std::string& name, int right, int down, mousebutton button) {
    const QPoint from = middleof(name), way(right, down);
    const QString b = QString::number(int(button));
    xdotool(moveto(from) + QStringList{"mousedown", b} + moveto(from + way / 2) +
            moveto(from + way) + QStringList{"mouseup", b});
}

void untilactive(const std::string& name) {
    until("the window " + name, [&] {
        const QWidget* const w = active();
        return w && (w->objectName().toStdString() == name || w->inherits(name.c_str()));
    });
}

// --- the frame ----------------------------------------------------------------------------------

// There is no window manager on the screen of a test: the window that comes up takes the keyboard,
// and gives it back to the one on top of the others when it goes.
class keyboardgiver : public QObject {
    bool eventFilter(QObject* o, QEvent* event) override {
        auto* const w = qobject_cast<QWidget*>(o);
        if (!w || !w->isWindow() || (w->windowType() & Qt::Popup) == Qt::Popup) return false;
        if (event->type() == QEvent::Show) {
            std::erase(shown, w);
            shown.push_back(w);
            w->activateWindow();
        }
        if (event->type() == QEvent::Hide) {
            std::erase(shown, w);
            if (!shown.empty()) shown.back()->activateWindow();
        }
        return false;
    }
    std::vector<QWidget*> shown;
};

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir home;  // of the toolkit's own memory of places and sizes
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    guardedapplication application(argc, argv);
    keyboardgiver giver;
    application.installEventFilter(&giver);
    setplatform(&theqtplatform());
    wiremodules();
    std::atomic<bool> done = false;
    int code = 0;
    std::thread user([&] {
        code = RUN_ALL_TESTS();
        done = true;
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    while (!done) QApplication::exec();  // a test may leave the program and begin anew
    user.join();
    return code;
}
