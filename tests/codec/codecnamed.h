#pragma once

#include "codec/codecs.h"

/// Codecs by the names that rows of tests call them by.
inline const TextCodec &codecNamed(QByteArrayView name)
{
    static constexpr struct {
        QByteArrayView name;
        const TextCodec &(*codec)();
    } codecs[] = {
        { "SJIS", shiftJisCodec },
        { "eucJP", eucCodec },
        { "JIS7", jisCodec },
        { "UTF8", utf8Codec },
        { "ISO-8859-1", latin1Codec },
        { "UTF-16LE", utf16LittleEndianCodec },
        { "UTF-16BE", utf16BigEndianCodec },
    };
    for (const auto &row : codecs) {
        if (row.name == name)
            return row.codec();
    }
    Q_UNREACHABLE();
}
