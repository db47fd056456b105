#include "platform/text/blockdecoder.h"
#include "platform/text/blockencoder.h"
#include "platform/text/codecs.h"

namespace {

class Latin1Encoder {
public:
    static bool isAscii() { return true; }
    static quint64 special(quint64 word) { return asciirun::highBytes(word); }
    static void character(char16_t c, uchar *&out) { *out++ = c < 0x100 ? static_cast<uchar>(c) : '?'; }
    static void pair(char16_t, char16_t, uchar *&out) { *out++ = '?'; }
    static void byte(uchar b, uchar *&out) { *out++ = b; }
    static void lone(char16_t, uchar *&out) { *out++ = '?'; }
    static void finish(uchar *&) { }
};

/// ISO 8859-1: every byte is a character, nothing is undecodable.
class Latin1Codec : public TextCodec {
public:
    QByteArrayView name() const override { return "ISO-8859-1"; }

    void decode(QByteArrayView bytes, TextSink &sink) const override
    {
        for (qsizetype at = 0; at < bytes.size(); at += decodedBlockUnits)
            sink.latin1(bytes.sliced(at, std::min(decodedBlockUnits, bytes.size() - at)));
    }

    bool encode(const TextReader &next, const ByteSink &sink) const override
    {
        return encodeBlocks<Latin1Encoder>(next, sink);
    }
};

} // namespace

const TextCodec &latin1Codec()
{
    static const Latin1Codec codec;
    return codec;
}
