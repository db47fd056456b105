#include "codec/codecs.h"
#include "codec/statelesscodec.h"
#include "codec/statelessdecoder.h"
#include "codec/statelessencoder.h"
#include "files/byteescape.h"

#include <QtEndian>

#include <array>
#include <bit>
#include <cstring>

namespace {

class Utf8Decoder : public StatelessDecoder {
public:
    bool next(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        // Most often several three-byte characters in a row: kana and kanji.
        for (int i = 0; i < charactersPerStep && fourCharacters(in, end, out); i += 4) {
            out += 4;
            in += 12;
        }
        for (int i = 0; i < 4 && end - in >= 3; ++i) {
            const char16_t c = threeByteCharacter(in);
            if (c == 0)
                break;
            *out++ = c;
            in += 3;
        }
        if (in != end && isSpecial(*in))
            other(in, end, out);
        return false;
    }

    static int mostBytes(uchar first)
    {
        constexpr uchar leastOfTwo = 0xC2, leastOfThree = 0xE0, leastOfFour = 0xF0, leastOfNone = 0xF8;
        const bool isLead = first >= leastOfTwo && first < leastOfNone;
        return !isLead ? 1 : first < leastOfThree ? 2 : first < leastOfFour ? 3 : 4;
    }

    static int bytesAt(const uchar *in)
    {
        const int most = mostBytes(*in);
        const bool isWhole = (most == 2 && isContinuation(in[1]))
            || (most == 3 && threeByteCharacter(in) != 0)
            || (most == 4 && fourByteCharacter(in, in + 4) != 0);
        return isWhole ? most : 1;
    }

private:
    static constexpr int charactersPerStep = 32;

    /// Decodes four three-byte characters in a row by vector instructions; false when there are none.
    static bool fourCharacters(const uchar *in, const uchar *end, char16_t *out)
    {
        using Four __attribute__((vector_size(16))) = quint32;
        using FourUnits __attribute__((vector_size(8))) = quint16;
        if (end - in < 13)
            return false;
        const Four bytes = { fourBytes(in), fourBytes(in + 3), fourBytes(in + 6), fourBytes(in + 9) };
        const Four start = bytes & 0x200F; // of the character: its five highest bits
        const auto isWrong = (start == 0) | (start == 0x200D); // overlong, or a surrogate
        const auto isValid = ((bytes & 0xC0C0F0) == 0x8080E0) & ~isWrong;
        const auto halves = std::bit_cast<std::array<quint64, 2>>(isValid);
        if (~(halves[0] & halves[1]) != 0)
            return false;
        const Four c = (bytes & 0xF) << 12 | (bytes >> 2 & 0xFC0) | (bytes >> 16 & 0x3F);
        const FourUnits units = __builtin_convertvector(c, FourUnits);
        std::memcpy(out, &units, sizeof units);
        return true;
    }

    static quint32 fourBytes(const uchar *in)
    {
        quint32 bytes;
        std::memcpy(&bytes, in, sizeof bytes);
        return qFromLittleEndian(bytes);
    }

    static bool isContinuation(uchar byte) { return (byte & 0xC0) == 0x80; }

    /// 0 when the three bytes are not one character of three bytes.
    static char16_t threeByteCharacter(const uchar *in)
    {
        const quint32 bytes = quint32{ in[0] } << 16 | quint32{ in[1] } << 8 | in[2];
        const auto c = static_cast<char16_t>((bytes >> 4 & 0xF000) | (bytes >> 2 & 0xFC0) | (bytes & 0x3F));
        const bool isValid = (bytes & 0xF0C0C0) == 0xE08080 && c >= 0x800 && !QChar::isSurrogate(c);
        return isValid ? c : u'\0';
    }

    static void other(const uchar *&in, const uchar *end, char16_t *&out)
    {
        const uchar lead = *in;
        if (lead >= 0xC2 && lead <= 0xDF && end - in >= 2 && isContinuation(in[1])) {
            *out++ = static_cast<char16_t>((lead & 0x1F) << 6 | (in[1] & 0x3F));
            in += 2;
        } else if (const char32_t c = fourByteCharacter(in, end); c != 0) {
            *out++ = QChar::highSurrogate(c);
            *out++ = QChar::lowSurrogate(c);
            in += 4;
        } else if (end - in < 3 || threeByteCharacter(in) == 0) {
            *out++ = escapeOf(lead);
            ++in;
        }
    }

    static char32_t fourByteCharacter(const uchar *in, const uchar *end)
    {
        if (end - in < 4 || (in[0] & 0xF8) != 0xF0)
            return 0;
        if (!isContinuation(in[1]) || !isContinuation(in[2]) || !isContinuation(in[3]))
            return 0;
        const char32_t c =
            (in[0] & 0x07U) << 18 | (in[1] & 0x3FU) << 12 | (in[2] & 0x3FU) << 6 | (in[3] & 0x3FU);
        return QChar::requiresSurrogates(c) && c <= QChar::LastValidCodePoint ? c : 0;
    }
};

class Utf8Encoder : public StatelessEncoder {
public:
    static constexpr bool hasByteOrderMark = true;
    static constexpr bool writesPairs = true;
    static bool hasCode(char16_t) { return true; }
    static void character(char16_t c, uchar *&out)
    {
        if (c < 0x80) {
            *out++ = static_cast<uchar>(c);
        } else if (c < 0x800) {
            *out++ = static_cast<uchar>(0xC0 | c >> 6);
            *out++ = continuation(c);
        } else {
            *out++ = static_cast<uchar>(0xE0 | c >> 12);
            *out++ = continuation(c >> 6U);
            *out++ = continuation(c);
        }
    }

    static void pair(char16_t high, char16_t low, uchar *&out)
    {
        const char32_t c = QChar::surrogateToUcs4(high, low);
        *out++ = static_cast<uchar>(0xF0 | c >> 18);
        *out++ = continuation(c >> 12);
        *out++ = continuation(c >> 6);
        *out++ = continuation(c);
    }

    static void unknown(uchar *&out) { character(QChar::ReplacementCharacter, out); }
    static void lone(char16_t, uchar *&out) { unknown(out); }

private:
    static uchar continuation(char32_t bits) { return static_cast<uchar>(0x80 | (bits & 0x3F)); }
};

} // namespace

/// Every byte of an overlong form, of a surrogate, of a number beyond U+10FFFF or of a cut sequence is an
/// escape, so that no two sequences of bytes give the same text.
const TextCodec &utf8Codec()
{
    static const StatelessCodec<Utf8Decoder, Utf8Encoder> codec;
    return codec;
}
