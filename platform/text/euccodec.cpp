#include "platform/text/blockcodec.h"
#include "platform/text/codecs.h"
#include "platform/text/jistables.h"

namespace {

constexpr uchar katakanaShift = 0x8E;
constexpr uchar supplementShift = 0x8F;

constexpr bool isPlaneByte(uchar byte)
{
    return byte >= 0xA1 && byte <= 0xFE;
}

constexpr bool isKatakanaByte(uchar byte)
{
    return byte >= 0xA1 && byte <= 0xDF;
}

class EucDecoder {
public:
    static bool isAscii() { return true; }
    static bool isSpecial(uchar byte) { return byte >= 0x80; }
    static quint64 special(quint64 word) { return asciirun::highBytes(word); }

    void next(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        for (int i = 0; i < charactersPerStep && in != end && isSpecial(*in); ++i) {
            const char16_t c = end - in >= 2 ? twoByteCharacter(in) : u'\0';
            if (c != 0) {
                *out++ = c;
                in += 2;
            } else {
                other(in, end, out);
            }
        }
    }

private:
    static constexpr int charactersPerStep = 32;

    char16_t twoByteCharacter(const uchar *in) const
    {
        return isPlaneByte(in[0]) && isPlaneByte(in[1]) ? m_planes->kanji(in[0], in[1]) : u'\0';
    }

    void other(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        if (in[0] == katakanaShift && end - in >= 2 && isKatakanaByte(in[1])) {
            *out++ = static_cast<char16_t>(0xFF61 + (in[1] - 0xA1));
            in += 2;
        } else if (const char16_t c = supplementCharacter(in, end); c != 0) {
            *out++ = c;
            in += 3;
        } else {
            *out++ = escapeOf(*in++);
        }
    }

    char16_t supplementCharacter(const uchar *in, const uchar *end) const
    {
        if (in[0] != supplementShift || end - in < 3 || !isPlaneByte(in[1]) || !isPlaneByte(in[2]))
            return 0;
        return m_planes->supplement(in[1], in[2]);
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
};

class EucEncoder {
public:
    bool isAscii() const { return m_escaped == 0; }
    static quint64 special(quint64 word) { return asciirun::highBytes(word); }

    void character(char16_t c, uchar *&out)
    {
        quint16 code = m_planes->code(c);
        if (m_escaped != 0)
            code = codeBehindEscapes(c, code);
        if (code == 0 && c != 0)
            *out++ = '?';
        else
            put(code, out);
    }

    void pair(char16_t, char16_t, uchar *&out) { lone(0, out); }

    void byte(uchar b, uchar *&out)
    {
        *out++ = b;
        m_escaped = static_cast<quint16>(m_escaped << 8 | b);
    }

    void lone(char16_t, uchar *&out)
    {
        *out++ = '?';
        m_escaped = 0;
    }

    static void finish(uchar *&) { }

private:
    static void put(quint16 code, uchar *&out)
    {
        if (code >= 0x100) {
            if (code & JisPlanes::supplementFlag)
                *out++ = supplementShift;
            *out++ = static_cast<uchar>(code >> 8 | 0x80);
            *out++ = static_cast<uchar>(code | 0x80);
        } else {
            if (code >= 0x80)
                *out++ = katakanaShift;
            *out++ = static_cast<uchar>(code);
        }
    }

    /// The usual code, unless it would make another character together with the escaped bytes before it and
    /// there is a second code that does not.
    quint16 codeBehindEscapes(char16_t c, quint16 usual)
    {
        const quint16 escaped = std::exchange(m_escaped, quint16{ 0 });
        if (!fuses(escaped, usual))
            return usual;
        for (const SecondCode &second : m_planes->secondCodes(c)) {
            if (!fuses(escaped, second.code))
                return second.code;
        }
        return usual;
    }

    /// `escaped` holds the last two escaped bytes, the newer one lowest. Only codes that begin with a byte of
    /// a plane can continue something.
    bool fuses(quint16 escaped, quint16 code) const
    {
        if (code < 0x100 || (code & JisPlanes::supplementFlag))
            return false;
        const auto before = static_cast<uchar>(escaped >> 8);
        const auto last = static_cast<uchar>(escaped & 0xFF);
        const auto first = static_cast<uchar>(code >> 8 | 0x80);
        const auto second = static_cast<uchar>(code | 0x80);
        if (last == katakanaShift)
            return isKatakanaByte(first);
        if (last == supplementShift)
            return m_planes->supplement(first, second) != 0;
        if (!isPlaneByte(last))
            return false;
        return m_planes->kanji(last, first) != 0
            || (before == supplementShift && m_planes->supplement(last, first) != 0);
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
    quint16 m_escaped = 0; ///< the bytes just written, if they were escaped ones
};

} // namespace

/// EUC: JIS X 0208 in two bytes, half-width katakana behind 8E, JIS X 0212 behind 8F. Where bytes make no
/// character the first alone is an escape: the next may begin something sound.
const TextCodec &eucCodec()
{
    static const BlockCodec<EucDecoder, EucEncoder> codec("eucJP");
    return codec;
}
