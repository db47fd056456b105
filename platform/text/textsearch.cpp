#include "platform/text/textsearch.h"

namespace {

/// A place between two rows of a wrapped line as the end of the upper one; any other as it is.
RowCol atRowEnd(const TextStore &store, RowCol place)
{
    if (place.column > 0 || place.row == 0)
        return place;
    const TextStore::Row above = store.row(place.row - 1);
    return above.endsLine ? place : RowCol{ place.row - 1, above.length };
}

} // namespace

std::optional<SearchHit> searchForward(const TextStore &store, const TextPattern &pattern, RowCol start)
{
    if (start.column > store.row(start.row).length)
        start = { start.row + 1, 0 };
    if (start.row >= store.rowCount())
        return std::nullopt;
    const qint64 hit = pattern.indexIn(store, store.offsetAt(start));
    if (hit < 0)
        return std::nullopt;
    RowCol begin = store.rowColAt(hit);
    if (begin.row > start.row)
        begin = atRowEnd(store, begin);
    const qint64 end = begin.column + pattern.length();
    const qint64 rowLength = store.row(begin.row).length;
    if (end > rowLength)
        return SearchHit{ begin, { begin.row + 1, end - rowLength } };
    return SearchHit{ begin, { begin.row, end } };
}

std::optional<SearchHit> searchBackward(const TextStore &store, const TextPattern &pattern, RowCol start)
{
    const TextStore::Row row = store.row(start.row);
    const qint64 latest = qMin(start.column - 1, row.length - pattern.length());
    const qint64 hit = pattern.lastIndexIn(store, row.start + latest);
    if (hit < 0)
        return std::nullopt;
    const RowCol end = atRowEnd(store, store.rowColAt(hit + pattern.length()));
    const RowCol begin = store.rowColAt(hit);
    if (begin.row == end.row)
        return SearchHit{ begin, end };
    return SearchHit{ { end.row - 1, atRowEnd(store, begin).column }, end };
}
