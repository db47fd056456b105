#include "document/fittingcode.h"

#include "codec/textcodec.h"
#include "document/detection.h"
#include "text/lonesurrogates.h"

#include <algorithm>

namespace {

constexpr qsizetype sliceBytes = 65536;

/// Takes text, and notes whether it has the escape of a byte.
class FaultFinder : public TextCodec::TextSink {
public:
    void latin1(QByteArrayView) override { }
    void utf16(QStringView text) override { m_undecodable += loneSurrogates(text); }
    bool hasFault() const { return m_undecodable > 0; }

private:
    qint64 m_undecodable = 0;
};

/// In these codes a line end is what it is wherever it stands, so that lines may be decoded apart.
bool hasNoState(CharCode code)
{
    return code == CharCode::Utf8 || code == CharCode::ShiftJis || code == CharCode::Euc;
}

/// The end of the last line that ends in a slice or, where none does, of the first behind it.
qsizetype endOfSlice(QByteArrayView bytes)
{
    if (bytes.size() <= sliceBytes)
        return bytes.size();
    const qsizetype last = bytes.first(sliceBytes).lastIndexOf('\n');
    const qsizetype end = last == -1 ? bytes.indexOf('\n', sliceBytes) : last;
    return end == -1 ? bytes.size() : end + 1;
}

bool fits(QByteArrayView bytes, CharCode code)
{
    const TextCodec &codec = infoOf(code).codec();
    while (!bytes.isEmpty()) {
        const qsizetype end = hasNoState(code) ? endOfSlice(bytes) : bytes.size();
        FaultFinder finder;
        codec.decode(bytes.first(end), finder);
        if (finder.hasFault())
            return false;
        bytes = bytes.sliced(end);
    }
    return true;
}

bool isHigh(char byte)
{
    return uchar(byte) >= 0x80;
}

bool hasHighByte(QByteArrayView bytes)
{
    return std::ranges::any_of(bytes, isHigh);
}

qint64 highBytes(QByteArrayView bytes)
{
    return std::ranges::count_if(bytes, isHigh);
}

bool isSameCodec(CharCode one, CharCode other)
{
    return &infoOf(one).codec() == &infoOf(other).codec();
}

bool isCodeOfText(CharCode code)
{
    return hasNoState(code) || code == CharCode::Jis || code == CharCode::Ascii;
}

} // namespace

std::optional<CharCode> otherFittingCode(
    const QByteArray &bytes, CharCode readAs, bool wasDetected, qint64 undecodableBytes)
{
    const bool isRight = undecodableBytes == 0 && (!wasDetected || readAs == CharCode::Utf8);
    if (isRight || !isCodeOfText(readAs) || !hasHighByte(bytes))
        return std::nullopt;
    const bool isMostlyBroken = undecodableBytes > 0 && undecodableBytes * 2 >= highBytes(bytes);
    const CharCode detected = wasDetected ? readAs : detectCharCode(bytes, readAs);
    for (const CharCode code : { detected, CharCode::Utf8, CharCode::Euc, CharCode::ShiftJis }) {
        const bool isSure =
            code == CharCode::Utf8 || (code == CharCode::Euc && isSameCodec(readAs, CharCode::ShiftJis));
        if (!isCodeOfText(code) || isSameCodec(code, readAs) || !(isSure || isMostlyBroken))
            continue;
        if (fits(bytes, code))
            return code;
    }
    return std::nullopt;
}
