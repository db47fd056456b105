#pragma once

#include <QtGlobal>

/// A byte that no code accounts for travels through text as the lone surrogate U+DC80..U+DCFF of its value,
/// and becomes that byte again.

constexpr char16_t escapeOf(uchar byte)
{
    return static_cast<char16_t>(0xDC00 + byte);
}

constexpr bool isByteEscape(char16_t unit)
{
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

/// Of a unit that is a byte's escape.
constexpr uchar escapedByte(char16_t unit)
{
    return static_cast<uchar>(unit & 0xFF);
}
