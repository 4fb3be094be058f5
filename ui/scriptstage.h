// SPDX-License-Identifier: GPL-3.0-or-later
// A script played in the window before the user's eyes, as demonstrations and Play Script are;
// ui/script plays for the command line.
#pragma once

#include <functional>
#include <memory>
#include <string>

class QPoint;
class QWidget;

// The time of a play: the user's mouse and keys rest but those of its panel, the script's answers
// go into queues of their own, dialogs hold up no other window.
class stageplay {
  public:
    using keydoor = std::function<void(int key)>;
    using pressdoor = std::function<void(const QPoint& global)>;
    stageplay(keydoor onkey, const QWidget* panel, pressdoor onpress);
    ~stageplay();
    stageplay(const stageplay&) = delete;
    stageplay& operator=(const stageplay&) = delete;

  private:
    struct parts;
    std::unique_ptr<parts> held;
};

// Plays it on the model in hand, with its pauses or without; Esc or the button of the text strip
// ends it, the mouse and the other keys rest meanwhile. Returns the fault with its line; empty when
// it came to its end or was stopped.
std::string playonstage(const std::string& script, bool pauses);
