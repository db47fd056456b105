#pragma once

#include "codec/textcodec.h"

/// The codecs, for TextCodec's own list; everybody else asks TextCodec::codecForName().
const TextCodec &utf8Codec();
const TextCodec &utf16LittleEndianCodec();
const TextCodec &utf16BigEndianCodec();
const TextCodec &latin1Codec();
const TextCodec &shiftJisCodec();
const TextCodec &eucCodec();
const TextCodec &jisCodec();
