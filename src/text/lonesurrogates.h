#pragma once

#include <QStringView>

#include <algorithm>

/// Without branches, so that the compiler makes it vector instructions.
inline bool hasSurrogate(QStringView text)
{
    char16_t found = 0;
    for (const QChar c : text)
        found |= char16_t((c.unicode() & 0xF800) == 0xD800);
    return found != 0;
}

/// The surrogates that stand alone in a text whose high ones are all halves of pairs, as in what was decoded:
/// the escapes of its undecodable bytes. Cost: memory speed where there are few.
inline qint64 loneSurrogates(QStringView text)
{
    constexpr qsizetype block = 256;
    qint64 count = 0;
    for (; !text.isEmpty(); text = text.sliced(std::min(block, text.size()))) {
        const QStringView part = text.first(std::min(block, text.size()));
        if (!hasSurrogate(part))
            continue;
        for (const QChar c : part)
            count += c.isLowSurrogate() ? 1 : c.isHighSurrogate() ? -1 : 0;
    }
    return count;
}
