#pragma once

#include "editor/partwisetext.h"

/// Which way a block of lines moves.
enum class Indentation { In, Out };

/// The text of a range, with its spellings, where each line that begins there and is not empty has a TAB
/// more, or the one less that it begins with.
PartwiseText indenting(const TextStore &store, TextRange range, Indentation direction);
/// The same at once, by all processors: O(range.length()).
TextPiece indented(const TextStore &store, TextRange range, Indentation direction);
