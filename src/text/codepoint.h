#pragma once

#include <QStringView>

#include <type_traits>

/// The character at a unit: both halves of a surrogate pair as one, a lone surrogate as itself.
inline char32_t codePointAt(QStringView text, qsizetype at)
{
    const QChar unit = text[at];
    if (unit.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(unit, text[at + 1]);
    return unit.unicode();
}

inline bool isCombiningMark(char32_t codePoint)
{
    const QChar::Category category = QChar::category(codePoint);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining
        || category == QChar::Mark_Enclosing;
}

inline int unitsOf(char32_t codePoint)
{
    return QChar::requiresSurrogates(codePoint) ? 2 : 1;
}

/// The code point that begins with unit `i` of a text up to `end`, or that ends before unit `end`, where
/// `unit(i)` tells the units. Places are offsets or plain numbers.
template <typename Place, typename Unit>
char32_t codePointFrom(std::type_identity_t<Place> i, Place end, Unit unit)
{
    const QChar first(unit(i));
    if (!first.isHighSurrogate() || i + 1 == end)
        return first.unicode();
    const QChar second(unit(i + 1));
    return second.isLowSurrogate() ? QChar::surrogateToUcs4(first, second) : char32_t(first.unicode());
}

template <typename Place, typename Unit> char32_t codePointUpTo(Place end, Unit unit)
{
    const QChar last(unit(end - 1));
    const bool isHalf = last.isLowSurrogate() && end > Place{ 1 } && QChar(unit(end - 2)).isHighSurrogate();
    return isHalf ? QChar::surrogateToUcs4(QChar(unit(end - 2)), last) : char32_t(last.unicode());
}
