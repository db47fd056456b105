#pragma once

#include "platform/text/textpattern.h"
#include "platform/text/units.h"

#include <optional>

/// A hit in display rows, as it is to be marked. A column may lie behind the last one of its row: the row's
/// end is meant then.
struct SearchHit {
    RowCol begin;
    RowCol end;
};

// The rules of searching are rules on display rows: each row is searched together with the rest of its
// logical line below it (above it, when searching backwards), row by row. These functions give the same hits
// in one pass over the text, and in time that does not depend on how the rows lie.

/// The first hit at or behind a place. `start.column` may lie behind the end of its row: the search then
/// begins with the next row. A hit where a wrapped row ends belongs to the end of that row, unless the search
/// began in the next one. A hit over several row ends is marked to the row below the one it begins in.
std::optional<SearchHit> searchForward(const TextStore &store, const TextPattern &pattern, RowCol start);

/// The last hit that begins before a place and ends in its row or above. A hit over several row ends is
/// marked from the row above the one it ends in, at the column that it has in the row it really begins in.
std::optional<SearchHit> searchBackward(const TextStore &store, const TextPattern &pattern, RowCol start);
