#include "codec/codecs.h"
#include "codec/jistables.h"
#include "codec/statelesscodec.h"
#include "codec/statelessdecoder.h"
#include "codec/statelessencoder.h"
#include "files/byteescape.h"

namespace {

class ShiftJisDecoder : public StatelessDecoder {
public:
    bool next(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        const uchar *const from = in;
        // Most often several characters of two bytes in a row, with their usual codes.
        for (int i = 0; i < charactersPerStep && end - in >= 2; ++i) {
            const JisEntry entry = m_table->entry(in[0], in[1]);
            if (!isUsual(entry))
                break;
            *out++ = entry;
            in += 2;
        }
        for (int i = 0; i < charactersPerStep && in != end && isSpecial(*in); ++i) {
            const JisEntry entry = end - in >= 2 ? m_table->entry(in[0], in[1]) : JisEntry{ 0 };
            if (isUsual(entry)) {
                *out++ = entry;
                in += 2;
            } else if (entry == 0) {
                *out++ = oneByteCharacter(*in++);
            } else if (in == from) {
                *out++ = m_table->character(entry);
                in += 2;
                return true;
            } else {
                return false;
            }
        }
        return false;
    }

    static int mostBytes(uchar first) { return isSpecial(first) && !isKatakana(first) ? 2 : 1; }

    int bytesAt(const uchar *in) const
    {
        return mostBytes(*in) == 2 && m_table->entry(in[0], in[1]) != 0 ? 2 : 1;
    }

private:
    static constexpr int charactersPerStep = 32;

    static bool isKatakana(uchar byte) { return byte >= 0xA1 && byte <= 0xDF; }

    static char16_t oneByteCharacter(uchar byte)
    {
        return isKatakana(byte) ? static_cast<char16_t>(0xFF61 + (byte - 0xA1)) : escapeOf(byte);
    }

    const ShiftJisTable *m_table = &ShiftJisTable::instance();
};

class ShiftJisEncoder : public StatelessEncoder {
public:
    bool hasCode(char16_t c) const { return m_table->code(c) != 0; }

    void character(char16_t c, uchar *&out)
    {
        const quint16 code = m_table->code(c);
        if (code >= 0x100)
            *out++ = static_cast<uchar>(code >> 8);
        *out++ = code != 0 || c == 0 ? static_cast<uchar>(code) : '?';
    }

private:
    const ShiftJisTable *m_table = &ShiftJisTable::instance();
};

} // namespace

/// Shift-JIS with the repertoire of Windows-31J; 5C and 7E stay U+005C and U+007E. Where two bytes make no
/// character the first alone is an escape (or a half-width katakana): the second may begin something sound.
const TextCodec &shiftJisCodec()
{
    static const StatelessCodec<ShiftJisDecoder, ShiftJisEncoder> codec;
    return codec;
}
