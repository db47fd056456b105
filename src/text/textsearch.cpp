#include "text/textsearch.h"

namespace {

/// Where the selection of a hit that begins there ends.
CursorPlace hitEnd(const TextStore &store, CursorPlace begin, qint64 length)
{
    const Offset end = begin.offset + length;
    if (store.fitsInRow(begin.offset, length))
        return { end, true };
    const RowIndex below = store.rowColAt(begin).row + 1;
    return { below <= store.lastRow() ? qMin(end, store.row(below).end()) : end, true };
}

/// Where the selection of a hit that really begins at `hit` begins.
CursorPlace hitBegin(const TextStore &store, Offset hit, CursorPlace end)
{
    if (store.fitsInRow(hit, end.offset - hit))
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

std::optional<SearchHit> searchForward(const TextStore &store, const TextPattern &pattern, CursorPlace start)
{
    const std::optional<Offset> hit = pattern.indexIn(store, start.offset);
    if (!hit)
        return std::nullopt;
    const CursorPlace begin{ *hit, *hit > start.offset || start.atRowEnd };
    return SearchHit{ begin, hitEnd(store, begin, pattern.length()) };
}

std::optional<SearchHit> searchBackward(const TextStore &store, const TextPattern &pattern, CursorPlace start)
{
    const Offset end = store.row(store.rowColAt(start).row).end();
    const auto hit = pattern.lastIndexIn(store, qMin(start.offset - 1, end - pattern.length()));
    if (!hit)
        return std::nullopt;
    const CursorPlace hitEnd{ *hit + pattern.length(), true };
    return SearchHit{ hitBegin(store, *hit, hitEnd), hitEnd };
}
