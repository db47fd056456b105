#include "platform/text/textcodec.h"

#include <cstdlib>

/// Any bytes through every codec: the text stays what it is, whatever the blocks.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    for (const char *name : { "SJIS", "eucJP", "JIS7", "UTF8", "ISO-8859-1", "UTF-16LE", "UTF-16BE" }) {
        const TextCodec *codec = TextCodec::codecForName(name);
        TextCodec::setBlockUnits(65536);
        const QString text = codec->toUnicode(bytes);
        if (codec->toUnicode(codec->fromUnicode(text)) != text)
            std::abort();
        TextCodec::setBlockUnits(1 + static_cast<qsizetype>(size % 37));
        if (codec->toUnicode(bytes) != text)
            std::abort();
    }
    const TextCodec *utf8 = TextCodec::codecForName("UTF8");
    if (utf8->fromUnicode(utf8->toUnicode(bytes)) != bytes)
        std::abort();
    return 0;
}
