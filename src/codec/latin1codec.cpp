#include "codec/blockdecoder.h"
#include "codec/blockencoder.h"
#include "codec/codecs.h"
#include "codec/statelessencoder.h"
#include "codec/withoutcode.h"

namespace {

struct Latin1Encoder : StatelessEncoder {
    static bool hasCode(char16_t c) { return c < 0x100; }
    static void character(char16_t c, uchar *&out) { *out++ = c < 0x100 ? static_cast<uchar>(c) : '?'; }
};

/// ISO 8859-1: every byte is a character, nothing is undecodable.
class Latin1Codec : public TextCodec {
public:
    using TextCodec::decode;
    void decode(QByteArrayView bytes, TextSink &sink) const override
    {
        for (qsizetype at = 0; at < bytes.size(); at += sink.blockUnits)
            sink.latin1(bytes.sliced(at, std::min(sink.blockUnits, bytes.size() - at)));
    }

    std::unique_ptr<Encoding> encoding(ByteSink sink, AsRead asRead) const override
    {
        return std::make_unique<BlockEncoder<Latin1Encoder>>(std::move(sink), asRead);
    }

    qint64 findWithoutCode(const TextChunk &chunk, qint64 from, AsRead asRead) const override
    {
        return WithoutCode<Latin1Encoder>::find(chunk, from, asRead);
    }
};

} // namespace

const TextCodec &latin1Codec()
{
    static const Latin1Codec codec;
    return codec;
}
