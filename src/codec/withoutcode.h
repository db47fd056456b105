#pragma once

#include "codec/textcodec.h"

/// TextCodec::findWithoutCode() by an encoder, which tells, beside what BlockEncoder wants of it:
///
///     bool hasCode(char16_t c) const       not a surrogate, and not ASCII, which every code has
///     static constexpr bool writesPairs       characters beyond U+FFFF have codes
///     static bool isEscape(char16_t c)     of a low surrogate that stands alone
template <class Encoder> class WithoutCode {
public:
    static qint64 find(const TextChunk &chunk, qint64 from, TextCodec::AsRead asRead)
    {
        return chunk.isLatin1() ? find(chunk.latin1, from) : find(chunk.utf16, from, asRead);
    }

private:
    static constexpr char16_t firstNoAscii = 0x80;

    static qint64 find(QByteArrayView latin1, qint64 from)
    {
        const Encoder encoder{};
        for (qint64 i = from; i < latin1.size(); ++i) {
            const char16_t c = uchar(latin1[i]);
            if (c >= firstNoAscii && !encoder.hasCode(c))
                return i;
        }
        return -1;
    }

    static qint64 find(QStringView text, qint64 from, TextCodec::AsRead asRead)
    {
        const Encoder encoder{};
        for (qint64 i = from; i < text.size(); ++i) {
            const char16_t c = text[i].unicode();
            if (c < firstNoAscii)
                continue;
            if (!QChar::isSurrogate(c)) {
                if (!encoder.hasCode(c))
                    return i;
            } else if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
                if (!Encoder::writesPairs)
                    return i;
                ++i;
            } else if (asRead == TextCodec::AsRead::Nothing || !Encoder::isEscape(c)) {
                return i;
            }
        }
        return -1;
    }
};
