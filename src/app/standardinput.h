#pragma once

#include "files/sharedfd.h"

#include <QString>

#include <optional>

/// Puts something that can be neither read nor written to, as before, where one of the three standard files
/// is closed: the next file that is opened would pass for it.
void occupyStandardFiles();
/// An open file, such as standard input, for whoever reads it. What is typed in a terminal comes to no other
/// process: that is read to its end before, which waits as long as it takes. Null, with errno, where it
/// cannot be read.
SharedFd inputFrom(int number);
/// The open file of this process alone that a name such as "/dev/fd/63" stands for, as shells write
/// "<(command)"; nothing for a name of another kind.
std::optional<int> ownFileNamed(const QString &name);
