// SPDX-License-Identifier: GPL-3.0-or-later
// What a demonstration shows of itself: its text with the buttons that steer it, and a frame about
// the control that is used next.
#pragma once

#include <QFrame>
#include <QPointer>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;

class demopanel : public QFrame {
  public:
    demopanel();
    ~demopanel() override;

    std::function<void()> onback, onnext, onstop;
    bool paused() const;
    double speed() const;  // 1: as written
    void togglepause();
    void say(const QString& words, int chapter, int chapters);
    // Frames a part of a window and stands beside it; an empty part is the whole widget.
    void pointat(QWidget* at, QRect part = QRect());
    void pointatnothing();
    bool presses(const QPoint& global);  // the button there, while a menu keeps the mouse

  private:
    void placebeside(const QRect& global);
    QPushButton* add(class QBoxLayout* row, const char* name, const QString& caption);
    QLabel *text, *chaptertext;
    QPushButton *back, *pause, *next, *stop;
    QComboBox* speeds;
    QPointer<QWidget> marker;
};
