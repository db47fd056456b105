#pragma once

#include "codec/textcodec.h"

/// The codecs. Each lives for the whole program.
const TextCodec &utf8Codec();
const TextCodec &utf16LittleEndianCodec();
const TextCodec &utf16BigEndianCodec();
/// Without a byte-order mark; the two above drop one and write one.
const TextCodec &unmarkedUtf16LittleEndianCodec();
const TextCodec &unmarkedUtf16BigEndianCodec();
const TextCodec &latin1Codec();
const TextCodec &shiftJisCodec();
const TextCodec &eucCodec();
const TextCodec &jisCodec();

/// By the byte-order mark at the start: FF FE or FE FF give UTF-16, EF BB BF UTF-8, anything else Latin-1.
const TextCodec &codecForContent(QByteArrayView data);
