// SPDX-License-Identifier: GPL-3.0-or-later
// The script player.
#include "ui/script.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <algorithm>

#include "core/appdir.h"
#include "core/journal.h"
#include "core/runtime.h"
#include "core/session.h"
#include "edit/outcome.h"
#include "ui/qtplatform.h"
#include "ui/record.h"
#include "ui/scriptcontrols.h"

static const int afterline = 250;  // milliseconds of the demonstration between two lines

static void settle() {
    for (int i = 0; i < 3; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QString onterminal(const QString& text) {
    QString shown;
    for (const QChar c : text) {
        if (c.category() == QChar::Other_Control && c != '\n' && c != '\t')
            shown += QString("\\x%1").arg(int(c.unicode()), 2, 16, QChar('0'));
        else
            shown += c;
    }
    return shown;
}

// --- the player ---------------------------------------------------------------------------------

// The text in quotes from place i on, which moves behind it. A backslash gives quotes, itself and
// the ends of lines.
static QString quotedtext(const QString& line, int& i) {
    QString text;
    for (++i; i < line.size() && line[i] != '"'; ++i) {
        const QChar next = i + 1 < line.size() ? line[i + 1] : QChar();
        if (line[i] == '\\' && (next == '"' || next == '\\' || next == 'n'))
            text += line[++i] == 'n' ? QChar('\n') : next;
        else
            text += line[i];
    }
    ++i;
    return text;
}

// Words of a script line; a text in double quotes is one word.
static QStringList scriptwords(const QString& line) {
    QStringList words;
    for (int i = 0; i < line.size();) {
        if (line[i].isSpace()) {
            ++i;
        } else if (line[i] == '"') {
            words << quotedtext(line, i);
        } else {
            int end = i;
            // Blanks within an index list belong to the name.
            for (int depth = 0; end < line.size() && (depth > 0 || !line[end].isSpace()); ++end)
                depth += line[end] == '(' ? 1 : line[end] == ')' ? -1 : 0;
            words << line.mid(i, end - i);
            i = end;
        }
    }
    return words;
}

bool scriptplayer::load(const QString& file) {
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        fault = file + ": the script can not be read: " + in.errorString();
        return false;
    }
    path = file;
    folder = QFileInfo(file).absolutePath();
    lines = QString::fromUtf8(in.readAll()).split('\n');
    return true;
}

QString scriptplayer::inscript(const QString& file) const {
    const QString mark = "results:";
    if (file.startsWith(mark)) return QDir(results).absoluteFilePath(file.mid(mark.size()));
    return file.isEmpty() ? file : QDir(folder).absoluteFilePath(file);
}

// Installed scripts lie where nothing can be written.
void scriptplayer::setresults(const QString& directory) {
    results = QDir::cleanPath(inscript(directory));
    QDir().mkpath(results);
    if (iswritable(results.toStdString())) return;
    results = QDir(QString::fromStdString(appdir)).absoluteFilePath(QFileInfo(results).fileName());
    QDir().mkpath(results);
    if (!iswritable(results.toStdString())) refuse("nothing can be written to " + results);
    QTextStream(stdout) << "Results are in " << results << "\n";
}

int scriptplayer::texts() const {
    const auto says = [](const QString& line) { return line.trimmed().startsWith("say "); };
    return int(std::ranges::count_if(lines, says));
}

bool scriptplayer::play() {
    const recordrest rest;
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith('#')) continue;
        if (stopped) return false;
        try {
            if (before) before(scriptwords(line));
            if (stopped) return false;
            runstep(line);
            settle();
            if (pauses) pause(afterline);
            if (!theqtplatform().unanswered.empty()) {
                const QString question = QString::fromStdString(theqtplatform().unanswered);
                theqtplatform().unanswered.clear();
                refuse("the question \"" + question + "\" was asked and no answer was queued");
            }
        } catch (const scriptfault& f) {
            fault =
                QString("%1, line %2: %3").arg(QFileInfo(path).fileName()).arg(i + 1).arg(f.text);
            return false;
        }
    }
    return true;
}

// In small steps: a stop takes effect at once.
void scriptplayer::pause(int milliseconds) {
    const int step = 50;
    if (rest) return rest(milliseconds);
    for (int gone = 0; gone < milliseconds && !stopped; gone += step)
        theqtplatform().yield(std::min(step, milliseconds - gone));
}

// A line is a step of its own, also where a menu item plays the script.
void scriptplayer::runstep(const QString& line) {
    cutstep();
    const step s("");
    suggestname(scriptwords(line).mid(1).join(' ').toStdString());
    guarded(
        [&] {
            if (!run(line)) refuse("unknown command \"" + line + "\"");
        },
        [](const runtimeerror& e) { refuse(QString::fromStdString(e.what)); });
}

bool scriptplayer::run(const QString& line) {
    const scriptline given{line, scriptwords(line)};
    const QString& name = given.words[0];
    for (const scriptverb& verb : scriptverbs()) {
        if (name != verb.name) continue;
        if (given.words.size() - 1 < verb.words)
            refuse(QString("%1 takes %2 words").arg(name).arg(verb.words));
        verb.run(*this, given);
        if (name != "hits") givehits({});  // they are the next line's alone
        return true;
    }
    return false;
}
