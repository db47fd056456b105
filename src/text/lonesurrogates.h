#pragma once

#include "text/asciiwords.h"

#include <QStringView>

/// Not 0 where one of four UTF-16 units is a surrogate.
constexpr quint64 surrogatesAmong(quint64 units)
{
    const quint64 difference = (units & 0xF800F800F800F800ULL) ^ 0xD800D800D800D800ULL;
    return (difference - 0x0001000100010001ULL) & ~difference & 0x8000800080008000ULL;
}

/// The surrogates that stand alone in a text whose high ones are all halves of pairs, as in what was decoded:
/// the escapes of its undecodable bytes. Cost: memory speed where there are few.
inline qint64 loneSurrogates(QStringView text)
{
    constexpr qsizetype unitsOfWord = 4;
    qint64 count = 0;
    const auto add = [&](QStringView units) {
        for (const QChar c : units)
            count += c.isLowSurrogate() ? 1 : c.isHighSurrogate() ? -1 : 0;
    };
    qsizetype at = 0;
    for (; at + unitsOfWord <= text.size(); at += unitsOfWord) {
        if (surrogatesAmong(asciiwords::loadWord(text.utf16() + at)) != 0)
            add(text.sliced(at, unitsOfWord));
    }
    add(text.sliced(at));
    return count;
}
