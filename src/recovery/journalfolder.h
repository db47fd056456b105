#pragma once

#include "files/filecalls.h"

#include <QByteArray>

/// The folder of the journals, in the program's state folder; ends in "/".
QByteArray journalFolder();

/// A name that nobody can foresee, for a journal; and for a file that is to become one.
QByteArray newJournalName();
QByteArray newUnfinishedName();
bool isJournalName(const QByteArray &name);
bool isUnfinishedName(const QByteArray &name);

/// Sees to it that a folder is the user's own, and that nobody else may look into it. False: see errno.
bool isPrivateFolder(const FileCalls &calls, const QByteArray &folder);
