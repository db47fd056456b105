#include "text/cursorstops.h"

#include "text/characterstart.h"

namespace {

/// Units looked at behind a place; more only where a combined character is longer.
constexpr qint64 neighbourhood = 64;

qint64 startOf(const TextStore &store, qint64 offset)
{
    return characterStart(
        offset, store.length(), [&store](qint64 from, qint64 count) { return store.text(from, count); });
}

bool areApart(const TextStore &store, qint64 offset)
{
    return standsAlone(store.at(offset - 1)) && standsAlone(store.at(offset));
}

} // namespace

qint64 nextCursorStop(const TextStore &store, qint64 offset)
{
    const qint64 length = store.length();
    if (offset + 1 >= length || areApart(store, offset + 1))
        return qMin(offset + 1, length);
    const qint64 start = startOf(store, offset);
    for (qint64 ahead = neighbourhood;; ahead *= 2) {
        const qint64 end = qMin(length, offset + ahead);
        const qint64 next = start + graphemeEnd(store.text(start, end - start), 0);
        // The part may end within a surrogate pair.
        if (next + 1 < end || end == length)
            return next;
    }
}

qint64 previousCursorStop(const TextStore &store, qint64 offset)
{
    if (offset <= 1 || areApart(store, offset - 1))
        return qMax<qint64>(0, offset - 1);
    return startOf(store, offset - 1);
}
