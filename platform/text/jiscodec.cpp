#include "platform/text/blockcodec.h"
#include "platform/text/codecs.h"
#include "platform/text/jistables.h"

#include <algorithm>

namespace {

constexpr uchar escapeCharacter = 0x1B;

enum class Set { Ascii, Katakana, Kanji, Supplement };

/// An escape sequence that says which set the bytes 21..7E behind it belong to. The first one of a set is the
/// one that is written. The Roman set, (J, differs from ASCII in two shapes only and is taken for it.
struct Designation {
    QByteArrayView sequence;
    Set set;
};
constexpr Designation designations[] = {
    { "\x1B(B", Set::Ascii },
    { "\x1B(I", Set::Katakana },
    { "\x1B$B", Set::Kanji },
    { "\x1B$(D", Set::Supplement },
    { "\x1B(J", Set::Ascii },
    { "\x1B(H", Set::Ascii },
    { "\x1B$@", Set::Kanji },
    { "\x1B$(B", Set::Kanji },
    { "\x1B$(@", Set::Kanji },
};

const Designation *designationAt(const uchar *in, const uchar *end)
{
    const QByteArrayView rest(in, std::min<qsizetype>(end - in, 4));
    const auto *found = std::ranges::find_if(designations,
        [rest](const Designation &designation) { return rest.startsWith(designation.sequence); });
    return found == std::end(designations) ? nullptr : found;
}

constexpr bool isSetByte(uchar byte)
{
    return byte >= 0x21 && byte <= 0x7E;
}

/// Stands for a byte 21..7E that its set has no character for, or that lacks its second half: U+DD21..U+DD7E
/// in the kanji set, U+DE21.. in the supplement, U+DF60.. in the katakana set. Escapes U+DC80..U+DCFF are for
/// bytes above 7F alone, and the byte as such would be read as ASCII.
constexpr char16_t setEscape(Set set, uchar byte)
{
    const int base = set == Set::Kanji ? 0xDD00 : set == Set::Supplement ? 0xDE00 : 0xDF00;
    return static_cast<char16_t>(base + byte);
}

char16_t pairCharacter(const JisPlanes &planes, Set set, uchar first, uchar second)
{
    return set == Set::Kanji ? planes.kanji(first, second) : planes.supplement(first, second);
}

class JisDecoder {
public:
    bool isAscii() const { return m_set == Set::Ascii; }
    static bool isSpecial(uchar byte) { return byte >= 0x80 || byte == escapeCharacter; }
    static quint64 special(quint64 word)
    {
        return asciirun::highBytes(word) | asciirun::bytesEqual(word, escapeCharacter);
    }

    void next(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (*in == escapeCharacter) {
            escape(in, end, out);
        } else if (*in >= 0x80) {
            *out++ = escapeOf(*in++);
        } else if (m_set == Set::Ascii || !isSetByte(*in)) {
            *out++ = *in++;
        } else if (m_set == Set::Katakana) {
            katakana(in, end, out);
        } else {
            pairs(in, end, out);
        }
    }

private:
    static constexpr int charactersPerStep = 32;

    void escape(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (const Designation *designation = designationAt(in, end)) {
            m_set = designation->set;
            in += designation->sequence.size();
        } else {
            *out++ = *in++;
        }
    }

    static void katakana(const uchar *&in, const uchar *end, char16_t *&out)
    {
        for (int i = 0; i < charactersPerStep && in != end && isSetByte(*in); ++i) {
            const uchar byte = *in++;
            *out++ =
                byte < 0x60 ? static_cast<char16_t>(0xFF61 + (byte - 0x21)) : setEscape(Set::Katakana, byte);
        }
    }

    void pairs(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        const Set set = m_set;
        for (int i = 0; i < charactersPerStep && end - in >= 2 && isSetByte(in[0]) && isSetByte(in[1]); ++i) {
            const char16_t c = pairCharacter(*m_planes, set, in[0], in[1]);
            if (c != 0) {
                *out++ = c;
            } else {
                *out++ = setEscape(set, in[0]);
                *out++ = setEscape(set, in[1]);
            }
            in += 2;
        }
        if (in != end && isSetByte(*in) && (end - in == 1 || !isSetByte(in[1])))
            *out++ = setEscape(set, *in++);
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
    Set m_set = Set::Ascii;
};

class JisEncoder {
public:
    bool isAscii() const { return m_set == Set::Ascii && m_literal.size == 0; }
    static quint64 special(quint64 word) { return JisDecoder::special(word); }

    void character(char16_t c, uchar *&out)
    {
        const quint16 code = m_planes->code(c);
        if (code >= 0x100) {
            select(code & JisPlanes::supplementFlag ? Set::Supplement : Set::Kanji, out);
            *out++ = static_cast<uchar>(code >> 8 & 0x7F);
            *out++ = static_cast<uchar>(code & 0x7F);
        } else if (code >= 0x80) {
            select(Set::Katakana, out);
            *out++ = static_cast<uchar>(code & 0x7F);
        } else {
            ascii(code != 0 || c == 0 ? static_cast<uchar>(code) : uchar{ '?' }, out);
        }
    }

    void pair(char16_t, char16_t, uchar *&out) { ascii('?', out); }

    /// Bytes above 7F mean the same in every set: they need no escape sequence.
    void byte(uchar b, uchar *&out)
    {
        *out++ = b;
        m_half = 0;
        m_literal.size = 0;
    }

    void lone(char16_t c, uchar *&out)
    {
        const auto byte = static_cast<uchar>(c & 0xFF);
        for (const Set set : { Set::Kanji, Set::Supplement }) {
            if (c == setEscape(set, byte) && isSetByte(byte))
                return half(set, byte, out);
        }
        if (c == setEscape(Set::Katakana, byte) && isSetByte(byte) && byte >= 0x60) {
            select(Set::Katakana, out);
            *out++ = byte;
        } else {
            ascii('?', out);
        }
    }

    void finish(uchar *&out) { select(Set::Ascii, out); }

private:
    /// The text since an escape character that is text itself, while it may still become a designation.
    struct Literal {
        uchar bytes[4] = {};
        qsizetype size = 0;
    };

    void select(Set set, uchar *&out)
    {
        if (m_set != set || m_half != 0)
            designate(set, out);
    }

    void designate(Set set, uchar *&out)
    {
        const QByteArrayView sequence = std::ranges::find(designations, set, &Designation::set)->sequence;
        out = std::copy(sequence.begin(), sequence.end(), out);
        m_set = set;
        m_half = 0;
        m_literal.size = 0;
    }

    void ascii(uchar c, uchar *&out)
    {
        select(Set::Ascii, out);
        if (c == escapeCharacter)
            m_literal.size = 0;
        if (c == escapeCharacter || m_literal.size > 0)
            literal(c, out);
        *out++ = c;
    }

    /// Text that happens to spell a designation, which happens only where one stood between its characters,
    /// is kept apart by one that changes nothing.
    void literal(uchar c, uchar *&out)
    {
        m_literal.bytes[m_literal.size++] = c;
        const QByteArrayView text(m_literal.bytes, m_literal.size);
        if (designationAt(m_literal.bytes, m_literal.bytes + m_literal.size))
            designate(Set::Ascii, out);
        else if (std::ranges::none_of(
                     designations, [text](const auto &d) { return d.sequence.startsWith(text); }))
            m_literal.size = 0;
    }

    /// A byte that was undecodable goes where it would be undecodable again: two of them together only if
    /// they make no character, anything else behind a fresh designation.
    void half(Set set, uchar byte, uchar *&out)
    {
        if (m_set == set && m_half != 0 && pairCharacter(*m_planes, set, m_half, byte) == 0) {
            m_half = 0;
        } else {
            select(set, out);
            m_half = byte;
        }
        *out++ = byte;
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
    Set m_set = Set::Ascii;
    uchar m_half = 0; ///< the byte just written, if it is the first half of nothing yet
    Literal m_literal;
};

} // namespace

/// ISO-2022-JP with half-width katakana and JIS X 0212, in ASCII at each line end and at the end. Control
/// characters, blanks and bytes above 7F stand for the same in every set; a line end does not change the set.
/// An escape sequence that is none of the table is text.
const TextCodec &jisCodec()
{
    static const BlockCodec<JisDecoder, JisEncoder> codec("JIS7");
    return codec;
}
