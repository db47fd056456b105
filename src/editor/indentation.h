#pragma once

#include "text/textstore.h"

/// Which way a block of lines moves.
enum class Indentation { In, Out };

/// The text from `begin` to `end`, with its spellings, where each line that begins there and is not empty has
/// a TAB more, or the one less that it begins with. O(end - begin).
TextPiece indented(const TextStore &store, qint64 begin, qint64 end, Indentation direction);
