#pragma once

#include "files/filecalls.h"

#include <QByteArray>

/// What a save writes, until it takes the file's name, has a name that begins with this: it is in `folder`,
/// hidden, and begins as that of the file.
QByteArray stagedPrefix(QByteArrayView folder, QByteArrayView fileName);
/// Removes from a folder what saves have left there whose programs were stopped. Looks at `most` names of it.
/// True: there are any, and nothing of a save is left among them, on the disk too.
bool removeStagedStrays(
    const QByteArray &folder, const FileCalls &calls = FileCalls::system(), qsizetype most = 10000);
/// The same, but for folders that this program has looked through already.
void removeStagedStraysOnce(const QByteArray &folder, const FileCalls &calls = FileCalls::system());
