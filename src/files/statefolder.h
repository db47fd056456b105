#pragma once

#include "files/filecalls.h"

#include <QByteArray>

/// Where the program keeps what only it is to read: copies of files, and what was not saved.

/// $XDG_STATE_HOME/marlopad, ending in "/".
QByteArray stateFolder();

/// Makes a folder (its name ends in "/") and those above it that are missing, for the user alone. What is
/// made is on the disk: a file in a folder that a power cut takes away would be none. False: see errno.
bool makePrivateFolder(const FileCalls &calls, const QByteArray &folder);

/// Brings the names in a folder to the disk. True also where that is not possible: not every folder may be
/// read, and not every file system has this. False: see errno.
bool syncFolder(const FileCalls &calls, const QByteArray &folder);

/// The folder that a file is in, ending in "/"; "./" for a name alone.
QByteArray folderOf(const QByteArray &name);
