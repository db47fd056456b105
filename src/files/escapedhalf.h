#pragma once

#include "files/byteescape.h"

#include <QChar>

#include <type_traits>

/// Half a surrogate pair that stands alone in UTF-16 travels through text as the escapes of the three bytes
/// that UTF-8 would have for it: as itself it would be taken for an escape, or make a pair with one. The
/// three are one character, whatever code their bytes were read in.

constexpr int unitsOfHalf = 3;
constexpr char16_t firstOfHalf = escapeOf(0xED);

constexpr bool isSecondOfHalf(char16_t unit)
{
    return unit >= escapeOf(0xA0) && unit <= escapeOf(0xBF);
}

/// Whether a unit goes on what the first, or the first and the second, of the three have begun.
constexpr bool goesOnHalf(char16_t before, char16_t unit)
{
    const bool isThird = unit >= escapeOf(0x80) && unit <= escapeOf(0xBF);
    return before == firstOfHalf ? isSecondOfHalf(unit) : isSecondOfHalf(before) && isThird;
}

/// Writes the three.
constexpr void escapeHalf(char16_t half, char16_t *&out)
{
    *out++ = firstOfHalf;
    *out++ = escapeOf(static_cast<uchar>(0x80 | (half >> 6 & 0x3F)));
    *out++ = escapeOf(static_cast<uchar>(0x80 | (half & 0x3F)));
}

/// The half that the last three of some bytes stand for, the newest lowest; 0 for none.
constexpr char16_t halfOfBytes(quint32 bytes)
{
    if ((bytes & 0xFFE0C0) != 0xEDA080)
        return 0;
    return static_cast<char16_t>(0xD000 | (bytes >> 2 & 0xFC0) | (bytes & 0x3F));
}

/// The half that begins with unit `i` of a text up to `end`, where `unit(i)` tells the units; 0 for none.
/// Places are offsets or plain numbers.
template <typename Place, typename Unit>
char16_t escapedHalfFrom(std::type_identity_t<Place> i, Place end, Unit unit)
{
    if (unit(i) != firstOfHalf || end - i < unitsOfHalf)
        return 0;
    const char16_t second = unit(i + 1);
    const char16_t third = unit(i + 2);
    if (!goesOnHalf(firstOfHalf, second) || !goesOnHalf(second, third))
        return 0;
    return halfOfBytes(
        quint32(escapedByte(firstOfHalf)) << 16 | quint32(escapedByte(second)) << 8 | escapedByte(third));
}
