#include "codec/blockcodec.h"
#include "codec/codecs.h"
#include "codec/jistables.h"
#include "files/byteescape.h"

#include <algorithm>

namespace {

constexpr uchar escapeCharacter = 0x1B;

enum class Set { Ascii, Roman, Katakana, Kanji, Supplement };

/// An escape sequence that says which set the bytes 21..7E behind it belong to. The first one of a set is the
/// one that is written. The Roman set has a yen sign and an overline for backslash and tilde; they are read
/// as those all the same, as most files mean them.
struct Designation {
    QByteArrayView sequence;
    Set set;
};
constexpr Designation designations[] = {
    { "\x1B(B", Set::Ascii },
    { "\x1B(J", Set::Roman },
    { "\x1B(I", Set::Katakana },
    { "\x1B$B", Set::Kanji },
    { "\x1B$(D", Set::Supplement },
    { "\x1B(H", Set::Ascii },
    { "\x1B$@", Set::Kanji },
    { "\x1B$(B", Set::Kanji },
    { "\x1B$(@", Set::Kanji },
};
constexpr qsizetype longestDesignation = 4;

const Designation *designationAt(const uchar *in, const uchar *end)
{
    const QByteArrayView rest(in, std::min<qsizetype>(end - in, longestDesignation));
    const auto *found = std::ranges::find_if(designations,
        [rest](const Designation &designation) { return rest.startsWith(designation.sequence); });
    return found == std::end(designations) ? nullptr : found;
}

/// Over all designations at `in`; the set that they leave.
Set designatedSet(const uchar *&in, const uchar *end, Set before)
{
    Set set = before;
    while (in != end && *in == escapeCharacter) {
        const Designation *const designation = designationAt(in, end);
        if (!designation)
            break;
        set = designation->set;
        in += designation->sequence.size();
    }
    return set;
}

constexpr bool isSetByte(uchar byte)
{
    return byte >= 0x21 && byte <= 0x7E;
}

constexpr bool hasPairs(Set set)
{
    return set == Set::Kanji || set == Set::Supplement;
}

/// Stands for a byte 21..7E that its set has no character for, or that lacks its second half: U+DD21..U+DD7E
/// in the kanji set, U+DE21.. in the supplement, U+DF60.. in the katakana set. Escapes U+DC80..U+DCFF are for
/// bytes above 7F alone, and the byte as such would be read as ASCII.
constexpr char16_t setEscape(Set set, uchar byte)
{
    const int base = set == Set::Kanji ? 0xDD00 : set == Set::Supplement ? 0xDE00 : 0xDF00;
    return static_cast<char16_t>(base + byte);
}

/// Of a surrogate that is such an escape.
std::optional<Set> setOfEscape(char16_t c)
{
    const auto byte = escapedByte(c);
    for (const Set set : { Set::Kanji, Set::Supplement, Set::Katakana }) {
        const bool hasEscape = isSetByte(byte) && (hasPairs(set) || byte >= 0x60);
        if (hasEscape && c == setEscape(set, byte))
            return set;
    }
    return std::nullopt;
}

JisEntry pairEntry(const JisPlanes &planes, Set set, uchar first, uchar second)
{
    return set == Set::Kanji ? planes.kanji(first, second) : planes.supplement(first, second);
}

/// The character at `in`, where no designation is, in a set; goes over its bytes. `isSecondHalf` tells that
/// the byte before it makes no pair with it.
char16_t nextCharacter(
    const JisPlanes &planes, Set set, bool isSecondHalf, const uchar *&in, const uchar *end)
{
    const uchar byte = *in++;
    if (byte >= 0x80)
        return escapeOf(byte);
    if (set == Set::Ascii || set == Set::Roman || !isSetByte(byte))
        return byte;
    if (set == Set::Katakana)
        return byte < 0x60 ? static_cast<char16_t>(0xFF61 + (byte - 0x21)) : setEscape(set, byte);
    const bool isPair = !isSecondHalf && in != end && isSetByte(*in);
    const JisEntry entry = isPair ? pairEntry(planes, set, byte, *in) : JisEntry{ 0 };
    if (entry == 0)
        return setEscape(set, byte);
    ++in;
    return planes.character(entry);
}

/// Writes text, and keeps the state that the bytes written leave a reader in.
class JisEncoder {
public:
    static constexpr bool hasByteOrderMark = false;
    static constexpr bool writesPairs = false;

    bool hasCode(char16_t c) const { return m_planes->code(c) != 0; }
    static bool isEscape(char16_t c) { return isByteEscape(c) || setOfEscape(c); }

    bool isAscii() const { return m_set == Set::Ascii && m_literal.size == 0; }
    static quint64 special(quint64 word)
    {
        return asciiwords::highBytes(word) | asciiwords::bytesEqual(word, escapeCharacter);
    }

    Set set() const { return m_set; }
    /// The last byte written is the first half of what is no character, and the second half may follow.
    bool isHalf() const { return m_half != 0; }
    /// Nothing is under way that bytes to come might be taken into.
    bool isPlain() const { return m_half == 0 && m_literal.size == 0; }

    void character(char16_t c, uchar *&out)
    {
        const quint16 code = m_planes->code(c);
        if (code < 0x100 || m_set != setOfPair(code) || !isPlain())
            return otherCharacter(c, code, out);
        *out++ = (code >> 8) & 0x7F;
        *out++ = code & 0x7F;
    }

    void unknown(uchar *&out) { write(Set::Ascii, '?', 1, out); }
    void pair(char16_t, char16_t, uchar *&out) { unknown(out); }

    /// Bytes above 7F mean the same in every set: they need no escape sequence.
    void byte(uchar b, uchar *&out)
    {
        *out++ = b;
        m_half = 0;
        m_literal.size = 0;
    }

    void lone(char16_t c, uchar *&out)
    {
        if (const auto set = setOfEscape(c))
            write(*set, escapedByte(c), 1, out);
        else
            unknown(out);
    }

    /// One unit, whatever it is.
    void unit(char16_t c, uchar *&out)
    {
        if (!QChar::isSurrogate(c))
            character(c, out);
        else if (isByteEscape(c))
            byte(escapedByte(c), out);
        else
            lone(c, out);
    }

    /// Behind designations of its own a spelling stands anywhere. Without one it wants the set that it was
    /// read in, which an edit before it may have changed.
    bool admits(char16_t c, QByteArrayView spelling, uchar *&out)
    {
        const auto *in = reinterpret_cast<const uchar *>(spelling.data());
        const uchar *const end = in + spelling.size();
        const uchar *code = in;
        const Set set = designatedSet(code, end, m_set);
        if (code != in) {
            start(set);
        } else if (!isReadAs(c, m_set, in, end) || isTakenIn(in, end)) {
            const auto reads = [&](Set other) { return isReadAs(c, other, in, end); };
            const auto *const found = std::ranges::find_if(designations, reads, &Designation::set);
            if (found == std::end(designations))
                return false;
            designate(found->set, out);
        }
        follow(c, code, end);
        return true;
    }

    bool endsInAscii() const { return m_set == Set::Ascii || (m_set == Set::Roman && !m_isBriefly); }

    void finish(uchar *&out)
    {
        if (!endsInAscii())
            designate(Set::Ascii, out);
    }

private:
    /// The bytes since an escape character that is text itself, while they may still become a designation.
    struct Literal {
        uchar bytes[longestDesignation] = {};
        qsizetype size = 0;
    };

    static Set setOfPair(quint16 code)
    {
        return code & JisPlanes::supplementFlag ? Set::Supplement : Set::Kanji;
    }

    /// Any but a pair of the set that is designated.
    void otherCharacter(char16_t c, quint16 code, uchar *&out)
    {
        if (code >= 0x100)
            write(setOfPair(code), code, 2, out);
        else if (code >= 0x80)
            write(Set::Katakana, code, 1, out);
        else if (code != 0 && c >= 0x80)
            yenOrOverline(code, out);
        else if (code != 0 || c == 0)
            write(setForAscii(code), code, 1, out);
        else
            unknown(out);
    }

    Set setForAscii(quint16 code) const
    {
        const bool isSame = code != '\\' && code != '~';
        return m_set == Set::Roman && isSame && !m_isBriefly ? Set::Roman : Set::Ascii;
    }

    void yenOrOverline(quint16 code, uchar *&out)
    {
        const bool isBriefly = m_isBriefly || m_set != Set::Roman;
        write(Set::Roman, code, 1, out);
        m_isBriefly = isBriefly;
    }

    /// Writes one character or half of one, the low 7 bits of the lower one or two bytes of `code`.
    void write(Set set, quint16 code, int size, uchar *&out)
    {
        const uchar bytes[2] = { static_cast<uchar>((code >> 8) & 0x7F), static_cast<uchar>(code & 0x7F) };
        const uchar *const begin = bytes + 2 - size;
        const uchar *const end = bytes + 2;
        if (m_set != set || isTakenIn(begin, end))
            designate(set, out);
        out = std::copy(begin, end, out);
        follow(size == 1 && hasPairs(set) ? setEscape(set, *begin) : u'\0', begin, end);
    }

    void designate(Set set, uchar *&out)
    {
        const QByteArrayView sequence = std::ranges::find(designations, set, &Designation::set)->sequence;
        out = std::copy(sequence.begin(), sequence.end(), out);
        start(set);
    }

    void start(Set set)
    {
        m_set = set;
        m_isBriefly = false;
        m_half = 0;
        m_literal.size = 0;
    }

    bool isReadAs(char16_t c, Set set, const uchar *in, const uchar *end) const
    {
        return in != end && nextCharacter(*m_planes, set, false, in, end) == c && in == end;
    }

    /// Whether the bytes would be taken for the other half of what is no character, or, behind an escape
    /// character that is text, for a designation. A half that makes no pair with the one before is its other
    /// half, as it was.
    bool isTakenIn(const uchar *in, const uchar *end) const
    {
        if (m_half != 0 && hasPairs(m_set) && isSetByte(*in)
            && (end - in > 1 || pairEntry(*m_planes, m_set, m_half, *in) != 0))
            return true;
        if (m_literal.size == 0)
            return false;
        const Literal both = continued(in, end);
        return designationAt(both.bytes, both.bytes + both.size) != nullptr;
    }

    Literal continued(const uchar *in, const uchar *end) const
    {
        Literal both = m_literal;
        for (; in != end && both.size < longestDesignation; ++in)
            both.bytes[both.size++] = *in;
        return both;
    }

    /// Takes over what the bytes of one character leave behind.
    void follow(char16_t c, const uchar *in, const uchar *end)
    {
        const bool isHalf = hasPairs(m_set) && end - in == 1 && isSetByte(*in) && c == setEscape(m_set, *in);
        m_half = isHalf && m_half == 0 ? *in : uchar{ 0 };
        if (*in == escapeCharacter)
            m_literal.size = 0;
        else if (m_literal.size == 0)
            return;
        m_literal = continued(in, end);
        const QByteArrayView text(m_literal.bytes, m_literal.size);
        if (std::ranges::none_of(designations, [text](const auto &d) { return d.sequence.startsWith(text); }))
            m_literal.size = 0;
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
    Set m_set = Set::Ascii;
    bool m_isBriefly = false; ///< the Roman set, for these characters alone: what follows is in ASCII again
    uchar m_half = 0; ///< see isHalf()
    Literal m_literal;
};

/// Reads text, and has an encoder follow: what that would write otherwise is told as a spelling.
class JisDecoder {
public:
    bool isAscii() const { return m_written.isAscii(); }
    static bool isSpecial(uchar byte) { return byte >= 0x80 || byte == escapeCharacter; }
    static quint64 special(quint64 word) { return JisEncoder::special(word); }

    bool next(const uchar *&in, const uchar *end, char16_t *&out)
    {
        if (m_written.isPlain() && usualCharacters(in, end, out))
            return false;
        const uchar *const from = in;
        const Set set = designatedSet(in, end, m_written.set());
        m_usesRoman |= set == Set::Roman;
        const bool leavesRoman = m_usesRoman && set == Set::Ascii && in != from;
        if (in == end)
            return isOtherEnd(from, end);
        const bool isSecondHalf = in == from && m_written.isHalf();
        const char16_t c = nextCharacter(*m_planes, set, isSecondHalf, in, end);
        *out++ = c;
        return !isWritten(c, { from, in }, leavesRoman);
    }

    bool endsOpen() const { return !m_ended && !m_written.endsInAscii(); }

    /// The last byte may be the first of two, and designations belong to the character behind them.
    static qsizetype openFrom(QByteArrayView bytes)
    {
        qsizetype open = std::max<qsizetype>(0, bytes.size() - 1);
        for (;;) {
            const qsizetype from = std::max<qsizetype>(0, open - longestDesignation);
            const qsizetype escape = bytes.first(open).indexOf(char(escapeCharacter), from);
            if (escape < 0)
                return open;
            open = escape;
        }
    }

private:
    static constexpr int charactersPerStep = 32;

    /// Those of the present set whose only code is the one that is there.
    bool usualCharacters(const uchar *&in, const uchar *end, char16_t *&out) const
    {
        const char16_t *const before = out;
        const Set set = m_written.set();
        if (hasPairs(set)) {
            for (int i = 0; i < charactersPerStep && end - in >= 2 && isSetByte(in[0]) && isSetByte(in[1]);
                 ++i) {
                const JisEntry entry = pairEntry(*m_planes, set, in[0], in[1]);
                if (!isUsual(entry))
                    break;
                *out++ = entry;
                in += 2;
            }
        } else if (set == Set::Katakana) {
            for (int i = 0; i < charactersPerStep && in != end && *in >= 0x21 && *in < 0x60; ++i)
                *out++ = static_cast<char16_t>(0xFF61 + (*in++ - 0x21));
        }
        return out != before;
    }

    /// Whether the encoder writes just these bytes for a character; no if `leavesRoman`: ASCII looks the same
    /// in the Roman set, so that its designation would not be missed when what is before it is edited. The
    /// encoder has written them afterwards in any case.
    bool isWritten(char16_t c, QByteArrayView bytes, bool leavesRoman)
    {
        JisEncoder usual = m_written;
        uchar written[16];
        uchar *out = written;
        usual.unit(c, out);
        if (!leavesRoman && bytes == QByteArrayView(written, out - written)) {
            m_written = usual;
            return true;
        }
        [[maybe_unused]] const bool isAdmitted = m_written.admits(c, bytes, out = written);
        Q_ASSERT(isAdmitted && out == written);
        return false;
    }

    bool isOtherEnd(const uchar *from, const uchar *end)
    {
        m_ended = true;
        uchar written[16];
        uchar *out = written;
        m_written.finish(out);
        return QByteArrayView(from, end) != QByteArrayView(written, out - written);
    }

    const JisPlanes *m_planes = &JisPlanes::instance();
    JisEncoder m_written;
    bool m_usesRoman = false;
    bool m_ended = false; ///< with designations
};

class JisCodec : public BlockCodec<JisDecoder, JisEncoder> {
public:
    std::unique_ptr<Decoding> decoding() const override
    {
        return std::make_unique<BlockDecoding<JisDecoder>>();
    }
};

} // namespace

/// ISO-2022-JP with half-width katakana and JIS X 0212, in ASCII at each line end and at the end. Control
/// characters, blanks and bytes above 7F stand for the same in every set; a line end does not change the set.
/// An escape sequence that is none of the table is text.
const TextCodec &jisCodec()
{
    static const JisCodec codec;
    return codec;
}
