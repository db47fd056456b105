#include "text/textsearch.h"

#include "text/graphemes.h"
#include "text/textlayout.h"

namespace {

/// Whether text without LF is surely too narrow to hold a wrapped row and go on behind it: O(length).
bool fitsInRow(const TextStore &store, Offset offset, qint64 length)
{
    const TextLayout &layout = store.layoutAt(offset);
    if (!layout.wraps())
        return true;
    const Offset behind = offset + length;
    const bool isWhole = length == 0 || behind == store.end()
        || (standsAlone(store.at(behind - 1)) && standsAlone(store.at(behind)));
    return isWhole && layout.isWithinLimit(store.text(offset, length));
}

/// Where the selection of a hit that begins there ends.
CursorPlace hitEnd(const TextStore &store, CursorPlace begin, qint64 length)
{
    const Offset end = begin.offset + length;
    if (fitsInRow(store, begin.offset, length))
        return { end, true };
    const RowIndex below = store.rowColAt(begin).row + 1;
    return { below <= store.lastRow() ? qMin(end, store.row(below).end()) : end, true };
}

/// Where the selection of a hit that really begins at `hit` begins.
CursorPlace hitBegin(const TextStore &store, Offset hit, CursorPlace end)
{
    if (fitsInRow(store, hit, end.offset - hit))
        return { hit };
    const RowIndex lastRow = store.rowColAt(end).row;
    if (store.rowColAt(hit).row == lastRow)
        return { hit };
    const qint64 column = store.rowColAt(CursorPlace{ hit, true }).column;
    return store.placeAt({ lastRow - 1, qMin(column, store.row(lastRow - 1).length) });
}

} // namespace

CursorPlace nextColumn(const TextStore &store, CursorPlace place)
{
    const bool isRowEnd = place.atRowEnd && store.rowColAt(place) != store.rowColAt(place.offset);
    return isRowEnd ? CursorPlace{ place.offset } : CursorPlace{ place.offset + 1, true };
}

TextRange searchedRange(
    const TextStore &store, const TextPattern &pattern, SearchDirection direction, CursorPlace start)
{
    if (direction == SearchDirection::Forward)
        return { start.offset, store.end() };
    const Offset rowEnd = store.row(store.rowColAt(start).row).end();
    return { {}, qMax(Offset(), qMin(start.offset, rowEnd - pattern.length() + 1)) };
}

TextRange takeFirst(TextRange &range, SearchDirection direction, qint64 units)
{
    TextRange first = range;
    if (direction == SearchDirection::Forward)
        range.start = first.end = qMin(range.end, range.start + units);
    else
        range.end = first.start = qMax(range.start, range.end - units);
    return first;
}

SearchHit hitAt(const TextStore &store, const TextPattern &pattern, SearchDirection direction,
    CursorPlace start, Offset begin)
{
    if (direction == SearchDirection::Forward) {
        const CursorPlace first{ begin, begin > start.offset || start.atRowEnd };
        return { first, hitEnd(store, first, pattern.length()) };
    }
    const CursorPlace last{ begin + pattern.length(), true };
    return { hitBegin(store, begin, last), last };
}

std::optional<SearchHit> findHit(
    const TextStore &store, const TextPattern &pattern, SearchDirection direction, CursorPlace start)
{
    const TextRange range = searchedRange(store, pattern, direction, start);
    const auto begin = beginOfHit(store, pattern, direction, range);
    return begin ? std::optional(hitAt(store, pattern, direction, start, *begin)) : std::nullopt;
}
