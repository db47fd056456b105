#pragma once

#include "codec/textcodec.h"

/// What a store of these bytes, unedited, would be saved as.
inline QByteArray storedBytes(
    const TextCodec &codec, const TextStore &store, TextCodec::AsRead asRead = TextCodec::AsRead::Everything)
{
    QByteArray bytes;
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    codec.encode(store, collect, asRead);
    return bytes;
}

inline TextStore storeOf(const TextCodec &codec, QByteArrayView bytes)
{
    return codec.decode(bytes, LayoutRule{});
}

inline QByteArray savedUnedited(const TextCodec &codec, QByteArrayView bytes)
{
    return storedBytes(codec, storeOf(codec, bytes));
}
