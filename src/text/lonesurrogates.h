#pragma once

#include <QStringView>

/// The surrogates that stand alone in a text whose high ones are all halves of pairs, as in what was decoded:
/// the escapes of its undecodable bytes. Cost: memory speed.
inline qint64 loneSurrogates(QStringView text)
{
    constexpr qsizetype blockUnits = 4096; // counted in 16 bits, many at once
    qint64 count = 0;
    for (qsizetype at = 0; at < text.size(); at += blockUnits) {
        quint16 low = 0;
        quint16 high = 0;
        for (const QChar c : text.sliced(at, qMin(blockUnits, text.size() - at))) {
            low = static_cast<quint16>(low + ((c.unicode() & 0xFC00) == 0xDC00));
            high = static_cast<quint16>(high + ((c.unicode() & 0xFC00) == 0xD800));
        }
        count += qint64{ low } - high;
    }
    return count;
}
