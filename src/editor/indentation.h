#pragma once

#include "text/textstore.h"

/// Which way a block of lines moves.
enum class Indentation { In, Out };

/// The text of a range, with its spellings, where each line that begins there and is not empty has a TAB
/// more, or the one less that it begins with. O(range.length()).
TextPiece indented(const TextStore &store, TextRange range, Indentation direction);
