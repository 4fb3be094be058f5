// SPDX-License-Identifier: GPL-3.0-or-later
// The script player: drives the real menus, dialogs and mouse events from a text file, one command
// a line, so that what a script does a user can do. It plays tests, the tour and the demonstration.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

class scriptplayer {
  public:
    // Reads the file; relative paths inside it are relative to it. False with fault set when it
    // can not be read.
    bool load(const QString& path);
    // Plays all lines. False at the first line that fails; fault names it.
    bool play();
    QString fault;         // "tour.kds, line 12: ..."
    bool pauses = false;   // of `wait` and after each line: kept in the demonstration alone
    bool stopped = false;  // set from outside: play ends before the next line, without a fault
    std::function<void(const QString&)> say;               // explaining texts
    std::function<void(const QStringList& words)> before;  // a line is about to run
    std::function<void(int milliseconds)> rest;            // in place of a pause
    int texts() const;                                     // lines that say one

    // What the verbs ask for.
    void pause(int milliseconds);
    QString inscript(const QString& path) const;  // a path of the script, whole
    void setresults(const QString& directory);

  private:
    void runstep(const QString& line);
    bool run(const QString& line);
    QString path, folder;
    QString results;  // directory of the names that begin with "results:"
    QStringList lines;
};

// The verbs of scripts, as one table in scriptverbs.cpp.
struct scriptline {
    QString text;       // as it stands
    QStringList words;  // the verb first
};

struct scriptverb {
    const char* name;
    int words;          // that must follow
    const char* usage;  // as the manual has it
    void (*run)(scriptplayer&, const scriptline&);
};
const std::vector<scriptverb>& scriptverbs();

// A text of a file as a terminal may have it: control characters as "\x1b".
QString onterminal(const QString& text);
// Value of the model or the session by name: "nnodes", "nodes(0,3,1)", "lcname(2)". False when
// there is no such name. `expect` and `print` know besides what a control of an open dialog shows,
// by "FORM.CONTROL".
bool scriptvalue(const QString& name, QString& value);
QStringList scriptvaluenames();
