#pragma once

#include "text/textpattern.h"

#include <optional>

/// A hit as it is to be selected.
struct SearchHit {
    CursorPlace begin;
    CursorPlace end;
};

// The rules of searching are rules on display rows: each row is searched together with the rest of its
// logical line below it (above it, when searching backwards), row by row. These functions give the same hits
// in one pass over the text, and in time that does not depend on how the rows lie. They ask the store for
// rows only where a hit may hold a whole one.

/// The place one column behind another: where the search for the hit after a selected one begins. Behind the
/// last column of a row that is the start of the next row.
CursorPlace nextColumn(const TextStore &store, CursorPlace place);

/// The first hit at or behind a place. A hit where a wrapped row ends belongs to the end of that row, unless
/// the search began at the start of the next one. A hit over several row ends is selected to the row below
/// the one it begins in.
std::optional<SearchHit> searchForward(const TextStore &store, const TextPattern &pattern, CursorPlace start);

/// The last hit that begins before a place and ends in its row or above. A hit over several row ends is
/// selected from the row above the one it ends in, at the column that it has in the row it really begins in.
std::optional<SearchHit> searchBackward(
    const TextStore &store, const TextPattern &pattern, CursorPlace start);
