// SPDX-License-Identifier: GPL-3.0-or-later
// A demonstration under way: a script whose texts are its chapters, played with the controls that
// it uses framed, with pause, back, next, speed and stop.
#pragma once

#include <QString>

enum class demoends { done, stopped, failed };

struct demooutcome {
    demoends end = demoends::done;
    QString fault;  // with its line
};

// Plays it from an empty model on; the model in hand is lost, see ui/demonstration. `waits` off:
// without pauses, as scripts of tests do.
demooutcome playdemo(const QString& script, bool waits);
