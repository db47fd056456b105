#pragma once

#include "codec/textcodec.h"

#include <utility>

/// The text of some bytes, without its spellings.
inline QString decoded(const TextCodec &codec, QByteArrayView bytes)
{
    struct StringSink : TextCodec::TextSink {
        QString text;
        void latin1(QByteArrayView characters) override { text += QLatin1StringView(characters); }
        void utf16(QStringView block) override { text += block; }
    };
    StringSink sink;
    codec.decode(bytes, sink);
    return sink.text;
}

/// The bytes of a text that has no spellings.
inline QByteArray encoded(const TextCodec &codec, QStringView text)
{
    QByteArray bytes;
    const auto next = [&text] {
        TextChunk chunk;
        chunk.utf16 = std::exchange(text, {});
        return chunk;
    };
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    codec.encode(next, collect, TextCodec::AsRead::UndecodableBytes);
    return bytes;
}
