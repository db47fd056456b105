#pragma once

#include "codec/blockdecoder.h"
#include "codec/blockencoder.h"
#include "codec/textcodec.h"
#include "codec/withoutcode.h"

/// The codec of one decoder and one encoder that work block by block and have nothing before or behind the
/// text.
template <typename Decoder, typename Encoder> class BlockCodec : public TextCodec {
public:
    using TextCodec::decode;
    void decode(QByteArrayView bytes, TextSink &sink) const override { decodeBlocks<Decoder>(bytes, sink); }

    using TextCodec::encode;
    bool encode(const TextReader &next, const ByteSink &sink, AsRead asRead) const override
    {
        return encodeBlocks<Encoder>(next, sink, asRead);
    }

    qint64 findWithoutCode(const TextChunk &chunk, qint64 from, AsRead asRead) const override
    {
        return WithoutCode<Encoder>::find(chunk, from, asRead);
    }
};
