#pragma once

#include "codec/returncode.h"
#include "document/readfindings.h"

#include <QByteArray>

/// Turns the file's line ends into LF in place, before decoding: NUL becomes FF; with CR each CR becomes LF;
/// with CR+LF each CR goes; else nothing. Cost: memory speed; the array is not reallocated.
void normalizeLineEnds(QByteArray &bytes, ReturnCode returnCode);
/// What a save changes in a file that is read so, line ends and NULs being what they are in it. Cost: memory
/// speed.
RewrittenBytes countRewritten(const QByteArray &bytes, ReturnCode returnCode);
