#include "codec/codecs.h"
#include "tests/codec/shorttexts.h"
#include "tests/codec/storedbytes.h"

#include <cstdlib>

/// Any bytes through every codec, in blocks of any size: they are saved as they were.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    for (const TextCodec *codec : { &shiftJisCodec(), &eucCodec(), &jisCodec(), &utf8Codec(), &latin1Codec(),
             &utf16LittleEndianCodec(), &utf16BigEndianCodec() }) {
        QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
        if (codec == &utf16LittleEndianCodec() || codec == &utf16BigEndianCodec())
            bytes.prepend(encoded(*codec, QString()));
        const QString text = decoded(*codec, bytes);
        const TextStore store = storeOf(*codec, bytes, { {}, 1 + static_cast<qsizetype>(size % 37) });
        if (store.text() != text || storedBytes(*codec, store) != bytes)
            std::abort();
    }
    return 0;
}
