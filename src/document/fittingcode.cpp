#include "document/fittingcode.h"

#include "codec/textcodec.h"
#include "document/detection.h"
#include "text/lonesurrogates.h"

#include <algorithm>

namespace {

/// Takes text, and notes whether it has the escape of a byte.
class FaultFinder : public TextCodec::TextSink {
public:
    void latin1(QByteArrayView) override { }
    void utf16(QStringView text) override { m_undecodable += loneSurrogates(text); }
    bool hasFault() const { return m_undecodable > 0; }

private:
    qint64 m_undecodable = 0;
};

bool fits(const ByteBlocks &blocks, CharCode code)
{
    const TextCodec &codec = infoOf(code).codec();
    const std::unique_ptr<TextCodec::Decoding> decoding = codec.decoding();
    FaultFinder finder;
    blocks(code, [&](QByteArrayView bytes) {
        if (decoding)
            decoding->add(bytes, finder);
        else
            codec.decode(bytes, finder);
        return !finder.hasFault();
    });
    if (decoding)
        decoding->finish(finder);
    return !finder.hasFault();
}

constexpr CharCode anyCut = CharCode::Binary; ///< for whom every byte counts by itself

bool isHigh(char byte)
{
    return uchar(byte) >= 0x80;
}

bool hasHighByte(const ByteBlocks &blocks)
{
    bool has = false;
    blocks(anyCut, [&has](QByteArrayView bytes) { return !(has = std::ranges::any_of(bytes, isHigh)); });
    return has;
}

qint64 highBytes(const ByteBlocks &blocks)
{
    qint64 count = 0;
    blocks(anyCut,
        [&count](QByteArrayView bytes) { return count += std::ranges::count_if(bytes, isHigh), true; });
    return count;
}

CharCode detectedIn(const ByteBlocks &blocks, CharCode codeOfEmpty)
{
    CodeDetection detection;
    blocks(anyCut, [&detection](QByteArrayView bytes) { return detection.add(bytes), true; });
    return detection.code(codeOfEmpty);
}

bool isSameCodec(CharCode one, CharCode other)
{
    return &infoOf(one).codec() == &infoOf(other).codec();
}

} // namespace

std::optional<CharCode> otherFittingCode(
    const ByteBlocks &blocks, CharCode readAs, bool wasDetected, qint64 undecodableBytes)
{
    const bool isRight = undecodableBytes == 0 && (!wasDetected || readAs == CharCode::Utf8);
    if (isRight || !isCodeOfText(readAs) || !hasHighByte(blocks))
        return std::nullopt;
    const bool isMostlyBroken = undecodableBytes > 0 && undecodableBytes * 2 >= highBytes(blocks);
    const CharCode detected = wasDetected ? readAs : detectedIn(blocks, readAs);
    for (const CharCode code : { detected, CharCode::Utf8, CharCode::Euc, CharCode::ShiftJis }) {
        const bool isSure =
            code == CharCode::Utf8 || (code == CharCode::Euc && isSameCodec(readAs, CharCode::ShiftJis));
        if (!isCodeOfText(code) || isSameCodec(code, readAs) || !(isSure || isMostlyBroken))
            continue;
        if (fits(blocks, code))
            return code;
    }
    return std::nullopt;
}
