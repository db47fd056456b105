#pragma once

#include "files/sharedfd.h"

/// Puts something that can be neither read nor written to, as before, where one of the three standard files
/// is closed: the next file that is opened would pass for it.
void occupyStandardFiles();
/// Reads standard input to its end, into a file without a name in the folder for temporary files, and gives
/// that file, to be read from its start. Null, with errno, where the input cannot be read or has no room.
/// Waits as long as it takes.
SharedFd readStandardInput();
