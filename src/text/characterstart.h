#pragma once

#include "text/graphemes.h"

#include <QString>

/// Start of the character that unit `at` is part of, 0 <= at < size, in a text that is read in parts:
/// part(from, count) gives them. Cost: the character's length; one of more than `longestWhole` units, or as
/// many letters of flags in a row, may be taken for several.
template <typename Part> qint64 characterStart(qint64 at, qint64 size, Part part)
{
    constexpr qint64 fewUnits = 64;
    constexpr qint64 longestWhole = 1 << 16;
    for (qint64 behind = fewUnits;; behind *= 4) {
        const qint64 from = qMax<qint64>(0, at - behind);
        const QString text = part(from, qMin(at + 2, size) - from);
        const qsizetype inside = at - from;
        if (from == 0 || behind >= longestWhole || certainStart(text, inside) > 0)
            return from + graphemeStart(text, inside);
    }
}
