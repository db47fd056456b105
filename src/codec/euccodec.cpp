#include "codec/codecs.h"
#include "codec/jistables.h"
#include "codec/statelesscodec.h"
#include "codec/statelessdecoder.h"
#include "codec/statelessencoder.h"
#include "files/byteescape.h"

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

class EucDecoder : public StatelessDecoder {
public:
    bool next(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        for (int i = 0; i < charactersPerStep && in != end && isSpecial(*in); ++i) {
            const JisEntry entry = end - in >= 2 ? twoByteEntry(in) : JisEntry{ 0 };
            if (isUsual(entry)) {
                *out++ = entry;
                in += 2;
                continue;
            }
            const Character character =
                entry != 0 ? Character{ m_planes->character(entry), 2, true } : otherCharacter(in, end);
            if (character.isOther && i > 0)
                return false;
            *out++ = character.unit;
            in += character.bytes;
            if (character.isOther)
                return true;
        }
        return false;
    }

    static int mostBytes(uchar first)
    {
        return first == supplementShift ? 3 : first == katakanaShift || isPlaneByte(first) ? 2 : 1;
    }

    int bytesAt(const uchar *in) const
    {
        return isPlaneByte(*in) && twoByteEntry(in) != 0 ? 2 : otherCharacter(in, in + mostBytes(*in)).bytes;
    }

private:
    static constexpr int charactersPerStep = 32;

    struct Character {
        char16_t unit;
        int bytes;
        bool isOther; ///< the code that it was read from is not its usual one
    };

    JisEntry twoByteEntry(const uchar *in) const
    {
        return isPlaneByte(in[0]) && isPlaneByte(in[1]) ? m_planes->kanji(in[0], in[1]) : JisEntry{ 0 };
    }

    Character otherCharacter(const uchar *in, const uchar *end) const
    {
        if (in[0] == katakanaShift && end - in >= 2 && isKatakanaByte(in[1]))
            return { static_cast<char16_t>(0xFF61 + (in[1] - 0xA1)), 2, false };
        if (const JisEntry entry = supplementEntry(in, end); entry != 0)
            return { m_planes->character(entry), 3, !isUsual(entry) };
        return { escapeOf(in[0]), 1, false };
    }

    JisEntry supplementEntry(const uchar *in, const uchar *end) const
    {
        if (in[0] != supplementShift || end - in < 3 || !isPlaneByte(in[1]) || !isPlaneByte(in[2]))
            return 0;
        return m_planes->supplement(in[1], in[2]);
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
};

class EucEncoder : public StatelessEncoder {
public:
    bool hasCode(char16_t c) const { return m_planes->code(c) != 0; }

    void character(char16_t c, uchar *&out)
    {
        const quint16 code = m_planes->code(c);
        if (code == 0 && c != 0)
            *out++ = '?';
        else
            put(code, out);
    }

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

    const JisPlanes *m_planes = &JisPlanes::instance();
};

} // namespace

/// EUC: JIS X 0208 in two bytes, half-width katakana behind 8E, JIS X 0212 behind 8F. Where bytes make no
/// character the first alone is an escape: the next may begin something sound.
const TextCodec &eucCodec()
{
    static const StatelessCodec<EucDecoder, EucEncoder> codec;
    return codec;
}
