#pragma once

#include "text/textpattern.h"

#include <optional>

enum class SearchDirection { Forward, Backward };

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

/// The hit of a search from a place. Forward it is the first one at or behind that; where it begins at the
/// end of a wrapped row it belongs to the end of that row, unless the search began at the start of the next
/// one, and over several row ends it is selected to the row below the one it begins in. Backward it is the
/// last one that begins before the place and ends in its row or above; over several row ends it is selected
/// from the row above the one it ends in, at the column that it has in the row it really begins in.
std::optional<SearchHit> findHit(
    const TextStore &store, const TextPattern &pattern, SearchDirection direction, CursorPlace start);

// The same in parts, for whoever searches a snapshot of the store elsewhere.

/// Where that hit may begin.
TextRange searchedRange(
    const TextStore &store, const TextPattern &pattern, SearchDirection direction, CursorPlace start);
/// Takes at most so many units off a range, those that are searched first.
TextRange takeFirst(TextRange &range, SearchDirection direction, qint64 units);
/// Where it begins, if that is in a range of the text.
template <class Text>
std::optional<Offset> beginOfHit(
    const Text &text, const TextPattern &pattern, SearchDirection direction, TextRange range)
{
    return direction == SearchDirection::Forward ? pattern.indexIn(text, range)
                                                 : pattern.lastIndexIn(text, range);
}
/// The hit that begins there.
SearchHit hitAt(const TextStore &store, const TextPattern &pattern, SearchDirection direction,
    CursorPlace start, Offset begin);
