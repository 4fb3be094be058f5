// SPDX-License-Identifier: GPL-3.0-or-later
// One lock file a model, named by the sum of its path; that of a process that is gone counts for
// nothing.
#include "ui/modellock.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include "core/session.h"

long modellock::follow(const std::string& model) {
    if (model == held) return 0;
    held = model;
    lock.reset();
    const QFileInfo file(QString::fromStdString(model + ".tek"));
    if (!file.exists()) return 0;  // not saved yet
    const QDir folder(QString::fromStdString(appdir));
    folder.mkpath("windows");
    const QByteArray sum =
        QCryptographicHash::hash(file.canonicalFilePath().toUtf8(), QCryptographicHash::Sha1);
    lock = std::make_unique<QLockFile>(folder.filePath("windows/" + sum.toHex()));
    lock->setStaleLockTime(0);  // a window may stay open for days
    if (lock->tryLock()) return 0;
    qint64 process = 0;
    QString machine, program;
    lock->getLockInfo(&process, &machine, &program);
    return long(process);
}
