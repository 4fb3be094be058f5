// SPDX-License-Identifier: GPL-3.0-or-later
// The user of a window test: sits in a thread of its own, works with the keyboard and the mouse of
// the X server, and looks at the window's thread for what came of it. Nothing waits for a time, all
// for a condition.
#pragma once

#include <QApplication>
#include <QWidget>
#include <functional>
#include <string>

// Runs look in the window's thread, also while a box is open there, and gives its result.
template <typename Look>
auto ask(Look look) {
    decltype(look()) result{};
    QMetaObject::invokeMethod(
        qApp, [&] { result = look(); }, Qt::BlockingQueuedConnection);
    return result;
}
// Starts what may open a box, and does not wait for its end.
void start(std::function<void()> action);

// Waits until it holds. Throws with these words when it does not within the patience of a test.
void until(const std::string& what, const std::function<bool()>& holds);

void key(const std::string& name);  // "Return", "ctrl+o", "alt+f"
void typetext(const std::string& text);
enum class mousebutton { left = 1, middle = 2, right = 3, wheelup = 4, wheeldown = 5 };
// At the middle of a widget, named by its object name, in the window that has the keyboard or in
// the main window; waits until it can be pressed.
void click(const std::string& name, mousebutton button = mousebutton::left);
void drag(const std::string& name, int right, int down, mousebutton button);  // from the middle

// Waits until a window of this object name, or of this class, has the keyboard.
void untilactive(const std::string& name);
QWidget* active();  // to be called in the window's thread
