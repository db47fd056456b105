#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

#include <QByteArray>

/// Decides the character code from all bytes of a file; `defaultCode` is the answer for an empty one. Cost:
/// memory speed, at most three passes.
CharCode detectCharCode(const QByteArray &bytes, CharCode defaultCode);
/// Decides the line end by the first one in the file; `defaultCode` where there is none.
ReturnCode detectReturnCode(const QByteArray &bytes, ReturnCode defaultCode);
