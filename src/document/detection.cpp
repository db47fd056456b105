#include "document/detection.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr char cr = 13;
constexpr char lf = 10;
constexpr uchar escapeCharacter = 27;
constexpr uchar firstPlain = 28;

const uchar *beginOf(QByteArrayView bytes)
{
    return reinterpret_cast<const uchar *>(bytes.data());
}

const uchar *endOf(QByteArrayView bytes)
{
    return beginOf(bytes) + bytes.size();
}

/// The first `byte` in front of `end`; `end` when there is none.
const uchar *find(const uchar *from, const uchar *end, int byte)
{
    const void *found = from == end ? nullptr : std::memchr(from, byte, static_cast<size_t>(end - from));
    return found ? static_cast<const uchar *>(found) : end;
}

/// What a loop over bytes sees that the compiler turns into vector instructions.
struct Glance {
    uchar all = 0; ///< the bits of all bytes
    uchar least = 0xFF;
    bool hasEscape = false;
};

Glance glanceAt(const uchar *in, const uchar *end)
{
    Glance glance;
    uchar escapes = 0;
    for (; in != end; ++in) {
        glance.all |= *in;
        glance.least = std::min(glance.least, *in);
        escapes |= *in == escapeCharacter ? uchar{ 1 } : uchar{ 0 };
    }
    glance.hasEscape = escapes != 0;
    return glance;
}

constexpr bool isHighByte(uchar byte)
{
    return byte >= 0x80;
}

constexpr bool isContinuation(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

/// How many more bytes a character wants behind its first one; nothing: UTF-8 of up to three bytes has no
/// such.
std::optional<int> wantedBehind(uchar first)
{
    if (!isHighByte(first))
        return 0;
    if (first < 0xC0 || first >= 0xF0)
        return std::nullopt;
    return first < 0xE0 ? 1 : 2;
}

/// Whether each byte is what the two in front of it want: first bytes of characters want one or two behind
/// them. Without branches, so that the compiler makes it vector instructions.
bool isEachWanted(const uchar *in, const uchar *end)
{
    constexpr auto flag = [](bool is) { return is ? uchar{ 0xFF } : uchar{ 0 }; };
    uchar wrong = 0;
    for (; in != end; ++in) {
        const auto wanted = uchar(flag(in[-1] >= 0xC0) | flag(in[-2] >= 0xE0));
        wrong |= uchar((wanted ^ flag(isContinuation(*in))) | flag(*in >= 0xF0));
    }
    return wrong == 0;
}

/// Goes over bytes as UTF-8, of which a character in front still wants `owed`. How many the last character
/// still wants; nothing: they are not UTF-8.
std::optional<int> passUtf8(const uchar *in, const uchar *end, int owed)
{
    constexpr qsizetype looksBack = 2;
    for (const uchar *const start = in; in != end && (owed > 0 || in - start < looksBack); ++in) {
        if (owed > 0 ? !isContinuation(*in) : !wantedBehind(*in))
            return std::nullopt;
        owed = owed > 0 ? owed - 1 : *wantedBehind(*in);
    }
    if (in == end)
        return owed;
    if (!isEachWanted(in, end))
        return std::nullopt;
    return end[-1] >= 0xC0 ? wantedBehind(end[-1]) : end[-2] >= 0xE0 ? 1 : 0;
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

void CodeDetection::add(QByteArrayView bytes)
{
    constexpr qsizetype block = 16384; // is at hand for all that look at it
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(block, bytes.size()))) {
        const uchar *const in = beginOf(bytes);
        const uchar *const end = in + std::min(block, bytes.size());
        for (const uchar *at = in; m_started < 2 && at != end; ++at)
            m_start[m_started++] = *at;
        if (hasMark()) {
            m_hasHigh = true;
            return;
        }
        if (m_pass == Pass::GoesOn)
            pass(in, end);
        if (m_pass == Pass::Binary)
            return;
        lookForJis(in, end);
        if (m_hasHigh && !m_hasShiftJisByte)
            m_hasShiftJisByte = hasShiftJisByte(in, end);
    }
}

/// Goes on with the walk as far as it goes.
void CodeDetection::pass(const uchar *in, const uchar *end)
{
    const Glance glance = glanceAt(in, end);
    const bool hasHigh = isHighByte(glance.all);
    m_hasHigh |= hasHigh;
    m_hasEscape |= glance.hasEscape;
    m_isPlain &= !hasHigh && glance.least >= firstPlain;
    const uchar *const nul = glance.least == 0 ? find(in, end, 0) : end;
    if (hasHigh || m_owed > 0) {
        const std::optional<int> owed = passUtf8(in, nul, m_owed);
        m_owed = owed.value_or(0);
        if (!owed)
            m_pass = Pass::Ended;
    }
    if (m_pass == Pass::GoesOn && nul != end)
        m_pass = Pass::Binary;
}

/// Whether ESC $ B, ESC $ @, ESC ( I, ESC ( B or ESC ( J occurs. A byte that breaks off a sequence is not
/// looked at again: ESC ESC $ B is none.
void CodeDetection::lookForJis(const uchar *in, const uchar *end)
{
    for (; in != end && m_jis != JisState::Found; ++in) {
        switch (m_jis) {
        case JisState::Start:
            in = find(in, end, escapeCharacter);
            if (in == end)
                return;
            m_jis = JisState::Escape;
            break;
        case JisState::Escape:
            m_jis = *in == '$' ? JisState::Dollar : *in == '(' ? JisState::Parenthesis : JisState::Start;
            break;
        case JisState::Dollar:
            m_jis = *in == 'B' || *in == '@' ? JisState::Found : JisState::Start;
            break;
        case JisState::Parenthesis:
            m_jis = *in == 'I' || *in == 'B' || *in == 'J' ? JisState::Found : JisState::Start;
            break;
        case JisState::Found:
            break;
        }
    }
}

CharCode CodeDetection::code(CharCode defaultCode) const
{
    if (m_started == 0)
        return defaultCode;
    if (hasMark())
        return CharCode::Unicode;
    if (m_pass == Pass::Binary)
        return CharCode::Binary;
    if (m_pass == Pass::GoesOn && !m_hasEscape)
        return m_isPlain ? CharCode::Ascii : CharCode::Utf8;
    if (m_jis == JisState::Found)
        return CharCode::Jis;
    return m_hasShiftJisByte ? CharCode::ShiftJis : CharCode::Euc;
}

void LineEndDetection::add(QByteArrayView bytes)
{
    if (m_found)
        return;
    const uchar *in = beginOf(bytes);
    const uchar *const end = endOf(bytes);
    if (!m_sawCr) {
        const uchar *const firstLf = find(in, end, lf);
        in = find(in, firstLf, cr);
        m_sawCr = in != firstLf;
        if (!m_sawCr && firstLf != end)
            m_found = ReturnCode::Lf;
    }
    if (!m_sawCr)
        return;
    in = std::find_if(in, end, [](uchar byte) { return byte != cr; });
    if (in != end)
        m_found = *in == lf ? ReturnCode::CrLf : ReturnCode::Cr;
}

CharCode detectCharCode(QByteArrayView bytes, CharCode defaultCode)
{
    CodeDetection detection;
    detection.add(bytes);
    return detection.code(defaultCode);
}

ReturnCode detectReturnCode(QByteArrayView bytes, ReturnCode defaultCode)
{
    LineEndDetection detection;
    detection.add(bytes);
    return detection.found().value_or(defaultCode);
}
