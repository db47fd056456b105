#include "document/detection.h"

#include "text/asciiwords.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char cr = 13;
constexpr char lf = 10;
constexpr uchar escapeCharacter = 27;
constexpr uchar firstPlain = 28;

const uchar *beginOf(const QByteArray &bytes)
{
    return reinterpret_cast<const uchar *>(bytes.constData());
}

const uchar *endOf(const QByteArray &bytes)
{
    return beginOf(bytes) + bytes.size();
}

/// The first `byte` in front of `end`; `end` when there is none.
const uchar *find(const uchar *from, const uchar *end, int byte)
{
    const void *found = from == end ? nullptr : std::memchr(from, byte, static_cast<size_t>(end - from));
    return found ? static_cast<const uchar *>(found) : end;
}

/// What the first look at a file finds out: one walk over it as UTF-8.
struct Utf8Pass {
    bool isBinary = false; ///< met a NUL; the rest is then not known
    bool isUtf8 = false; ///< reached the end
    bool hasEscape = false; ///< met the escape character as a character
    bool isPlain = true; ///< nothing but bytes 28..127
};

/// Over ASCII without NUL, eight bytes at a time; fewer than eight may remain before anything else.
const uchar *passAsciiWords(const uchar *in, const uchar *end, Utf8Pass &pass)
{
    quint64 escapes = 0;
    quint64 controls = 0;
    while (end - in >= asciiwords::wordSize) {
        const quint64 word = asciiwords::loadWord(in);
        if ((asciiwords::highBytes(word) | asciiwords::bytesEqual(word, 0)) != 0)
            break;
        escapes |= asciiwords::bytesEqual(word, escapeCharacter);
        controls |= asciiwords::bytesLess(word, firstPlain);
        in += asciiwords::wordSize;
    }
    pass.hasEscape |= escapes != 0;
    pass.isPlain &= controls == 0;
    return in;
}

const uchar *passThreeByteCharacters(const uchar *in, const uchar *end)
{
    while (end - in >= 3 && (in[0] & 0xF0) == 0xE0 && (in[1] & 0xC0) == 0x80 && (in[2] & 0xC0) == 0x80)
        in += 3;
    return in;
}

int continuationBytes(uchar lead)
{
    if (lead >= 0xC0 && lead <= 0xDF)
        return 1;
    return lead >= 0xE0 && lead <= 0xEF ? 2 : 0;
}

/// Over one character that is not ASCII; null when the pass ends there, which `pass` then tells about.
const uchar *passLongCharacter(const uchar *in, const uchar *end, Utf8Pass &pass)
{
    pass.isPlain = false;
    int owed = continuationBytes(*in++);
    if (owed == 0)
        return nullptr;
    for (; owed > 0 && in != end; --owed, ++in) {
        pass.isBinary = *in == 0;
        if ((*in & 0xC0) != 0x80)
            return nullptr;
    }
    return in;
}

Utf8Pass utf8Pass(const uchar *in, const uchar *end)
{
    Utf8Pass pass;
    while (in != end) {
        if (*in >= 0x80) {
            in = passLongCharacter(in, end, pass);
            if (!in)
                return pass;
            in = passThreeByteCharacters(in, end);
            continue;
        }
        in = passAsciiWords(in, end, pass);
        for (; in != end && *in < 0x80; ++in) {
            if (*in == 0) {
                pass.isBinary = true;
                return pass;
            }
            pass.hasEscape |= *in == escapeCharacter;
            pass.isPlain &= *in >= firstPlain;
        }
    }
    pass.isUtf8 = true;
    return pass;
}

/// Whether ESC $ B, ESC $ @, ESC ( I, ESC ( B or ESC ( J occurs. A byte that breaks off a sequence is not
/// looked at again: ESC ESC $ B is none.
bool hasJisEscape(const uchar *in, const uchar *end)
{
    while ((in = find(in, end, escapeCharacter)) != end) {
        const qsizetype left = end - in;
        const uchar kind = left >= 2 ? in[1] : uchar{ 0 };
        const uchar last = left >= 3 ? in[2] : uchar{ 0 };
        if (kind == '$' && (last == 'B' || last == '@'))
            return true;
        if (kind == '(' && (last == 'I' || last == 'B' || last == 'J'))
            return true;
        in += std::min<qsizetype>(left, kind == '$' || kind == '(' ? 3 : 2);
    }
    return false;
}

/// Whether a byte occurs that only Shift-JIS has: 81..9E, but not 8E, which EUC has too.
bool hasShiftJisByte(const uchar *in, const uchar *end)
{
    constexpr qsizetype blockSize = 4096;
    while (in != end) {
        const uchar *const blockEnd = in + std::min<qsizetype>(blockSize, end - in);
        bool found = false;
        for (; in != blockEnd; ++in)
            found |= *in >= 0x81 && *in <= 0x9E && *in != 0x8E;
        if (found)
            return true;
    }
    return false;
}

} // namespace

CharCode detectCharCode(const QByteArray &bytes, CharCode defaultCode)
{
    if (bytes.isEmpty())
        return defaultCode;
    if (bytes.startsWith("\xFF\xFE"))
        return CharCode::Unicode;
    const uchar *const begin = beginOf(bytes);
    const uchar *const end = endOf(bytes);
    const Utf8Pass pass = utf8Pass(begin, end);
    if (pass.isBinary)
        return CharCode::Binary;
    if (pass.isUtf8 && !pass.hasEscape)
        return pass.isPlain ? CharCode::Ascii : CharCode::Utf8;
    if (hasJisEscape(begin, end))
        return CharCode::Jis;
    return hasShiftJisByte(begin, end) ? CharCode::ShiftJis : CharCode::Euc;
}

ReturnCode detectReturnCode(const QByteArray &bytes, ReturnCode defaultCode)
{
    const uchar *const begin = beginOf(bytes);
    const uchar *const end = endOf(bytes);
    const uchar *const firstLf = find(begin, end, lf);
    const uchar *const firstCr = find(begin, firstLf, cr);
    if (firstCr == firstLf)
        return firstLf == end ? defaultCode : ReturnCode::Lf;
    const uchar *const behind = std::find_if(firstCr, end, [](uchar byte) { return byte != cr; });
    if (behind == end)
        return defaultCode;
    return *behind == lf ? ReturnCode::CrLf : ReturnCode::Cr;
}
