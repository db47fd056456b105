#include "text/cursorstops.h"

#include "text/characterstart.h"

namespace {

/// Units looked at behind a place; more only where a combined character is longer.
constexpr qint64 neighbourhood = 64;

Offset startOf(const TextStore &store, Offset offset)
{
    return characterStart(
        offset, store.end(), [&store](Offset from, qint64 count) { return store.text(from, count); });
}

bool areApart(const TextStore &store, Offset offset)
{
    return standsAlone(store.at(offset - 1)) && standsAlone(store.at(offset));
}

} // namespace

Offset nextCursorStop(const TextStore &store, Offset offset)
{
    const Offset textEnd = store.end();
    if (offset + 1 >= textEnd || areApart(store, offset + 1))
        return qMin(offset + 1, textEnd);
    const Offset start = startOf(store, offset);
    for (qint64 ahead = neighbourhood;; ahead *= 2) {
        const Offset end = qMin(textEnd, offset + ahead);
        const Offset next = start + graphemeEnd(store.text({ start, end }), 0);
        // The part may end within a surrogate pair.
        if (next + 1 < end || end == textEnd)
            return next;
    }
}

Offset previousCursorStop(const TextStore &store, Offset offset)
{
    if (offset <= Offset(1) || areApart(store, offset - 1))
        return qMax(Offset(), offset - 1);
    return startOf(store, offset - 1);
}
