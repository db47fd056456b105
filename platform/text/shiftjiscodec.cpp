#include "platform/text/blockcodec.h"
#include "platform/text/codecs.h"
#include "platform/text/jistables.h"

namespace {

class ShiftJisDecoder {
public:
    static bool isAscii() { return true; }
    static bool isSpecial(uchar byte) { return byte >= 0x80; }
    static quint64 special(quint64 word) { return asciirun::highBytes(word); }

    void next(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        for (int i = 0; i < charactersPerStep && in != end && isSpecial(*in); ++i) {
            const uchar byte = *in++;
            const char16_t c = in != end ? m_table->character(byte, *in) : u'\0';
            if (c != 0) {
                *out++ = c;
                ++in;
            } else {
                *out++ = oneByteCharacter(byte);
            }
        }
    }

private:
    static constexpr int charactersPerStep = 32;

    static char16_t oneByteCharacter(uchar byte)
    {
        const bool isKatakana = byte >= 0xA1 && byte <= 0xDF;
        return isKatakana ? static_cast<char16_t>(0xFF61 + (byte - 0xA1)) : escapeOf(byte);
    }

    const ShiftJisTable *m_table = &ShiftJisTable::instance();
};

class ShiftJisEncoder {
public:
    bool isAscii() const { return m_escaped == 0; }
    static quint64 special(quint64 word) { return asciirun::highBytes(word); }

    void character(char16_t c, uchar *&out)
    {
        quint16 code = m_table->code(c);
        if (m_escaped != 0)
            code = codeBehindEscape(c, code);
        if (code >= 0x100)
            *out++ = static_cast<uchar>(code >> 8);
        *out++ = code != 0 || c == 0 ? static_cast<uchar>(code) : '?';
    }

    void pair(char16_t, char16_t, uchar *&out) { lone(0, out); }

    void byte(uchar b, uchar *&out)
    {
        *out++ = b;
        m_escaped = b;
    }

    void lone(char16_t, uchar *&out)
    {
        *out++ = '?';
        m_escaped = 0;
    }

    static void finish(uchar *&) { }

private:
    /// The usual code, unless it would make a character together with the escaped byte before it and there is
    /// a second code that does not: 81 EE E1 is an escape and a character whose usual code FC 40 would turn
    /// the bytes into 81FC and "@".
    quint16 codeBehindEscape(char16_t c, quint16 usual)
    {
        const uchar escaped = std::exchange(m_escaped, uchar{ 0 });
        const auto fuses = [&](quint16 code) {
            return code >= 0x100 && m_table->character(escaped, static_cast<uchar>(code >> 8)) != 0;
        };
        if (!fuses(usual))
            return usual;
        for (const SecondCode &second : m_table->secondCodes(c)) {
            if (!fuses(second.code))
                return second.code;
        }
        return usual;
    }

    const ShiftJisTable *m_table = &ShiftJisTable::instance();
    uchar m_escaped = 0; ///< the byte just written, if it was an escaped one
};

} // namespace

/// Shift-JIS with the repertoire of Windows-31J; 5C and 7E stay U+005C and U+007E. Where two bytes make no
/// character the first alone is an escape (or a half-width katakana): the second may begin something sound.
const TextCodec &shiftJisCodec()
{
    static const BlockCodec<ShiftJisDecoder, ShiftJisEncoder> codec("SJIS");
    return codec;
}
