#pragma once

#include "files/filecalls.h"

#include <QByteArray>
#include <QList>

/// Copies of what files were that saves have kept in the state folder (OldCopy::keep()), and that the user
/// may not have been told of: who saves by ending the program sees no notice of it any more, nor does who was
/// killed.
///
/// Beside such a copy stands an empty file of its name and ".untold", until its user knows of it.

/// The user is to be told of this copy. False: see errno; nothing is there then.
bool noteUntold(const QByteArray &copy, const FileCalls &calls = FileCalls::system());
/// The user knows of it.
void noteTold(const QByteArray &copy, const FileCalls &calls = FileCalls::system());
/// Names of such copies; of those that are gone what stood beside them is removed.
QList<QByteArray> untoldCopies(const FileCalls &calls = FileCalls::system());
