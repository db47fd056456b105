#pragma once

#include <QChar>

/// Folds the case of a unit that is no half of a surrogate pair, as QChar::toCaseFolded() does.
char16_t foldedUnit(char16_t unit);

/// Folds the case of a unit by the one before it, which decides whether a low surrogate ends a pair. The high
/// surrogate of a pair never changes.
inline char16_t foldedUnit(char16_t unit, char16_t before)
{
    if (!QChar::isLowSurrogate(unit) || !QChar::isHighSurrogate(before))
        return foldedUnit(unit);
    return QChar::lowSurrogate(QChar::toCaseFolded(QChar::surrogateToUcs4(before, unit)));
}
