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

    std::unique_ptr<Encoding> encoding(ByteSink sink, AsRead asRead) const override
    {
        return std::make_unique<BlockEncoder<Encoder>>(std::move(sink), asRead);
    }

    qint64 findWithoutCode(const TextChunk &chunk, qint64 from, AsRead asRead) const override
    {
        return WithoutCode<Encoder>::find(chunk, from, asRead);
    }
};
