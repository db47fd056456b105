#pragma once

#include "files/filecalls.h"

#include <QByteArray>

/// Folders in which saves have begun to write beside a file, remembered in the state folder until a later
/// start has looked there for what a stopped save has left. Each is a file of its own, which costs a save one
/// look where the folder is known by then.

/// Remembers a folder, on the disk before this returns. Not where the state folder cannot be written to: a
/// save does not depend on it.
void noteStagedFolder(const QByteArray &folder, const FileCalls &calls = FileCalls::system());
/// Removes what stopped saves have left in the folders that are remembered, and forgets those that have
/// nothing of the kind any more. One that is not there, as on a card that is out, or cannot be cleaned up is
/// remembered for thirty days. Reads whole folders, on disks that may not answer; saves may go on meanwhile.
void removeNotedStrays(const FileCalls &calls = FileCalls::system());
