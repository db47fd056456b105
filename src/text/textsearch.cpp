#include "text/textsearch.h"

namespace {

qint64 rowEnd(const TextStore &store, qint64 row)
{
    const TextStore::Row found = store.row(row);
    return found.start + found.length;
}

/// Where the selection of a hit that begins there ends.
CursorPlace hitEnd(const TextStore &store, CursorPlace begin, qint64 length)
{
    const qint64 end = begin.offset + length;
    if (store.fitsInRow(begin.offset, length))
        return { end, true };
    const qint64 below = store.rowColAt(begin).row + 1;
    return { below < store.rowCount() ? qMin(end, rowEnd(store, below)) : end, true };
}

/// Where the selection of a hit that really begins at `hit` begins.
CursorPlace hitBegin(const TextStore &store, qint64 hit, CursorPlace end)
{
    if (store.fitsInRow(hit, end.offset - hit))
        return { hit };
    const qint64 lastRow = store.rowColAt(end).row;
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
    const qint64 hit = pattern.indexIn(store, start.offset);
    if (hit < 0)
        return std::nullopt;
    const CursorPlace begin{ hit, hit > start.offset || start.atRowEnd };
    return SearchHit{ begin, hitEnd(store, begin, pattern.length()) };
}

std::optional<SearchHit> searchBackward(const TextStore &store, const TextPattern &pattern, CursorPlace start)
{
    const qint64 end = rowEnd(store, store.rowColAt(start).row);
    const qint64 hit = pattern.lastIndexIn(store, qMin(start.offset - 1, end - pattern.length()));
    if (hit < 0)
        return std::nullopt;
    const CursorPlace hitEnd{ hit + pattern.length(), true };
    return SearchHit{ hitBegin(store, hit, hitEnd), hitEnd };
}
