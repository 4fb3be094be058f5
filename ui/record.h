// SPDX-License-Identifier: GPL-3.0-or-later
// The recorder: what the user does becomes a script that does it again. Controls are told by name,
// points by their coordinates in the model, questions and files by their answers. What no script
// can do again stands in it as a comment.
#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <string>

#include "core/platform.h"

class QEvent;
class QObject;
class QWidget;

bool isrecording();
// Begins a script with these lines; false with `fault` set when it can not be written.
bool startrecording(const std::string& path, const QStringList& opening, QString& fault);
// Lines of what was recorded, and the path of the script.
struct recorded {
    int lines = 0;
    std::string path;
};
recorded endrecording();
// Told when the script can not be written on; the recording has ended.
extern void (*onrecordfault)(const std::string& reason);

// One thing that the user does, by the line that does it again; empty: nothing is to be recorded.
// What is asked meanwhile stands before it, what is done meanwhile after it.
class recordedline {
  public:
    explicit recordedline(const QString& line);
    ~recordedline();
    recordedline(const recordedline&) = delete;
    recordedline& operator=(const recordedline&) = delete;

  private:
    bool mine = false;
};
// What the thing under way goes by, and how it was chosen: a selection. Written at once.
void recordbefore(const QString& line);
void recordanswer(answers answer);
void recordfile(const filechoice& choice, const filebox& box);
void recordremark(const QString& what);  // why a script does not do the same

// Nothing is recorded while this lives: a player plays, or a box of the toolkit asks.
class recordrest {
  public:
    recordrest();
    ~recordrest();
    recordrest(const recordrest&) = delete;
    recordrest& operator=(const recordrest&) = delete;
};

// Stands around each event of the toolkit.
class recordedevent {
  public:
    recordedevent(QObject* receiver, QEvent* event);
    ~recordedevent();
    recordedevent(const recordedevent&) = delete;
    recordedevent& operator=(const recordedevent&) = delete;

  private:
    QPointer<QObject> receiver;
    QEvent* event;
    bool outermost = false;
    QString key;  // the line of a key that has done nothing else
    QPointer<QWidget> targetbefore;
};
