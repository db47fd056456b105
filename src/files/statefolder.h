#pragma once

#include "files/filecalls.h"

#include <QByteArray>

#include <optional>

/// Folders by the file system's own bytes; a folder's name ends in "/".

/// The folder of a file's name; "./" where it has none.
QByteArray folderOf(const QByteArray &name);
/// The name of the file that a chain of symbolic links leads to, or would be made at; nothing for a circle,
/// and where a link cannot be read.
std::optional<QByteArray> followedLinks(QByteArray name, const FileCalls &calls);
/// Puts what was made, renamed or removed in a folder on the disk. True also where that is not possible: not
/// every folder may be read, and not every file system has this. False: see errno.
bool syncFolder(const FileCalls &calls, const QByteArray &folder);
/// Makes a folder and those above it, where they are missing, for their user alone, and puts all of their
/// names on the disk; those that were there too, because the program that made them may have been stopped
/// before it came to that. False: see errno.
bool makePrivateFolder(const FileCalls &calls, const QByteArray &folder);

/// Where the program keeps what is to last from one run to the next and is no setting:
/// $XDG_STATE_HOME/marlopad.
QByteArray stateFolder();

/// Ends a file's name that is written into a file. No name has it, so one that ends in it is whole.
inline constexpr char nameEnd = '\0';

/// Errors that say "not like this" or "not here", and not that something is broken.
bool isRefusal(int error);
