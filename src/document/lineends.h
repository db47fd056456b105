#pragma once

#include "codec/returncode.h"

#include <QByteArray>

/// Turns the file's line ends into LF in place, before decoding: NUL becomes FF; with CR each CR becomes LF;
/// with CR+LF each CR goes; else nothing. Cost: memory speed; the array is not reallocated.
void normalizeLineEnds(QByteArray &bytes, ReturnCode returnCode);
