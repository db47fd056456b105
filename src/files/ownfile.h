#pragma once

#include "files/filecalls.h"

#include <QByteArray>
#include <QByteArrayView>

/// Files that the program makes for itself, beside those of its users and in its state folder.
///
/// They are locked as long as they are open. One that is not has lost its program: that was killed, or the
/// machine stopped.

/// Makes a file, empty, locked and for its user alone, in a folder that is there. Its name begins with
/// `prefix` (folder and all) and ends in digits that nobody can foresee. Returns its descriptor, to be closed
/// by the caller, or -1.
int createOwnFile(const FileCalls &calls, const QByteArray &prefix, QByteArray *name);
inline constexpr qsizetype ownFileDigits = 13;
/// What is left of such a file's name, without its folder, before the digits; null when it does not end in
/// them.
QByteArrayView ownFilePrefix(QByteArrayView name);
/// What counts as lost where the file system has no locks.
enum class Unlockable {
    InUse, ///< nothing
    LostWhenOld, ///< what nobody has written to for ten minutes: for what is put before the user only
};
/// Opens a file that lost its program, and locks it. -1 for one that is in use, that is another user's, and
/// for what is no ordinary file of one name.
int openAbandoned(const FileCalls &calls, const QByteArray &name, Unlockable unlockable = Unlockable::InUse);
/// The error says that the file system has no locks.
bool hasNoLocks(int error);

/// The beginning of a file's name, for names that are made of it and are to suit any file system: no
/// character of UTF-8 is cut, which some refuse.
QByteArrayView shortName(QByteArrayView fileName);

/// Calls `found` with the name, without the folder, of everything in a folder, at most `most` of it. False,
/// with errno: the folder cannot be read, or not to its end.
bool forEachName(const FileCalls &calls, const QByteArray &folder, qsizetype most,
    const std::function<void(const QByteArray &name)> &found);
