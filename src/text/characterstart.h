#pragma once

#include "text/graphemes.h"

#include <QString>

/// Start of the character that unit `at` is part of, before `end`, in a text that is read in parts:
/// part(from, count) gives them. Places are offsets or plain numbers. Cost: the character's length; one of
/// more than `longestWhole` units, or as many letters of flags in a row, may be taken for several.
template <typename Place, typename Part> Place characterStart(Place at, Place end, Part part)
{
    constexpr qint64 fewUnits = 64;
    constexpr qint64 longestWhole = 1 << 16;
    for (qint64 behind = fewUnits;; behind *= 4) {
        const Place from = qMax(Place(), at - behind);
        const QString text = part(from, qMin(at + 2, end) - from);
        const qsizetype inside = at - from;
        if (from == Place() || behind >= longestWhole || certainStart(text, inside) > 0)
            return from + graphemeStart(text, inside);
    }
}
