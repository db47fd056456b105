#pragma once

#include "codec/codecs.h"

struct NamedCodec {
    const char *name; ///< that rows of tests call it by
    const TextCodec &(*codec)();
};
inline constexpr NamedCodec namedCodecs[] = {
    { "SJIS", shiftJisCodec },
    { "eucJP", eucCodec },
    { "JIS7", jisCodec },
    { "UTF8", utf8Codec },
    { "ISO-8859-1", latin1Codec },
    { "UTF-16LE", utf16LittleEndianCodec },
    { "UTF-16BE", utf16BigEndianCodec },
};

inline const TextCodec &codecNamed(QByteArrayView name)
{
    for (const NamedCodec &row : namedCodecs) {
        if (name == row.name)
            return row.codec();
    }
    Q_UNREACHABLE();
}
