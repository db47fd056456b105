#pragma once

#include "files/sharedfd.h"

#include <QString>

#include <optional>

/// Puts something that can be neither read nor written to, as before, where one of the three standard files
/// is closed: the next file that is opened would pass for it.
void occupyStandardFiles();
/// Reads an open file, such as standard input, to its end into a file without a name in the folder for
/// temporary files, and gives that one, to be read from its start. Null, with errno, where the input cannot
/// be read or has no room. Waits as long as it takes.
SharedFd readInput(int number);
/// The open file of this process alone that a name such as "/dev/fd/63" stands for, as shells write
/// "<(command)"; nothing for a name of another kind.
std::optional<int> ownFileNamed(const QString &name);
