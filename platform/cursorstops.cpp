#include "platform/charclass.h"
#include "platform/rowlayout.h"
#include "platform/text/graphemes.h"

#include <algorithm>

namespace {

/// Units looked at on each side of a place; more only where a combined character is longer.
constexpr qint64 neighbourhood = 64;

/// Whether a character and whatever simple one follows are never combined.
bool isSimple(char16_t unit)
{
    const CharClass found = charClass(unit);
    return !QChar::isSurrogate(unit) && (found == CharClass::Plain || found == CharClass::Mark);
}

} // namespace

qint64 nextCursorStop(const TextStore &store, qint64 offset)
{
    const qint64 length = store.length();
    if (offset + 1 >= length || (isSimple(store.at(offset)) && isSimple(store.at(offset + 1))))
        return qMin(offset + 1, length);
    const qint64 start = qMax<qint64>(0, offset - neighbourhood);
    for (qint64 ahead = neighbourhood;; ahead *= 2) {
        const qint64 end = qMin(length, offset + ahead);
        const std::vector<qsizetype> stops = graphemeBoundaries(store.text(start, end - start));
        const auto next = std::upper_bound(stops.begin(), stops.end(), offset - start);
        if (next != stops.end() && (start + *next < end || end == length))
            return start + *next;
    }
}

qint64 previousCursorStop(const TextStore &store, qint64 offset)
{
    if (offset <= 1 || (isSimple(store.at(offset - 1)) && isSimple(store.at(offset - 2))))
        return qMax<qint64>(0, offset - 1);
    const qint64 end = qMin(store.length(), offset + 2);
    for (qint64 behind = neighbourhood;; behind *= 2) {
        const qint64 start = qMax<qint64>(0, offset - behind);
        const std::vector<qsizetype> stops = graphemeBoundaries(store.text(start, end - start));
        const auto next = std::lower_bound(stops.begin(), stops.end(), offset - start);
        const qint64 previous = next == stops.begin() ? 0 : *std::prev(next);
        if (previous > 0 || start == 0)
            return start + previous;
    }
}
