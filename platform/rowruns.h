#pragma once

#include "platform/fontmeasure.h"

#include <QStringView>

#include <vector>

/// How each unit of a row is set.
enum class RunKind : quint8 {
    Single, ///< a character by itself
    LeftToRight, ///< part of a stretch that the toolkit shapes
    RightToLeft, ///< the same, read from right to left, with the digits and blanks inside it
};

/// Kind of every unit of `text`; one stretch is a sequence of units of one kind. Cost: O(length).
std::vector<RunKind> runKinds(QStringView text, const FontMeasure &measure);

/// The character at a unit: both halves of a surrogate pair as one, a lone surrogate as itself.
inline char32_t codePointAt(QStringView text, qsizetype at)
{
    const QChar unit = text[at];
    if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(unit, text[at + 1]);
    return unit.unicode();
}

inline int unitsOf(char32_t codePoint)
{
    return QChar::requiresSurrogates(codePoint) ? 2 : 1;
}
