#include "tests/codec/storedbytes.h"

#include <cstdlib>

/// Any bytes through every codec, in blocks of any size: they are saved as they were.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    for (const char *name : { "SJIS", "eucJP", "JIS7", "UTF8", "ISO-8859-1", "UTF-16LE", "UTF-16BE" }) {
        const TextCodec *codec = TextCodec::codecForName(name);
        QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
        if (codec->name().startsWith("UTF-16"))
            bytes.prepend(codec->fromUnicode(QString()));
        const QString text = codec->toUnicode(bytes);
        const TextStore store = storeOf(*codec, bytes, { {}, 1 + static_cast<qsizetype>(size % 37) });
        if (store.text() != text || storedBytes(*codec, store) != bytes)
            std::abort();
    }
    return 0;
}
