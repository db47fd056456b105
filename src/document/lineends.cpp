#include "document/lineends.h"

#include <algorithm>
#include <cstring>

namespace {

void replaceByte(uchar *in, const uchar *end, uchar byte, uchar replacement)
{
    for (; in != end; ++in)
        *in = *in == byte ? replacement : *in;
}

/// The end where it has none.
template <typename Byte> Byte *firstOf(char byte, Byte *begin, Byte *end)
{
    auto *const found = begin == end ? nullptr : std::memchr(begin, byte, size_t(end - begin));
    return found ? static_cast<Byte *>(found) : end;
}

/// Returns where the bytes end without the ones taken out. What is between two of them moves as a whole.
uchar *removeByte(uchar *in, uchar *end, char byte)
{
    uchar *out = in;
    while (in != end) {
        uchar *const next = firstOf(byte, in, end);
        std::memmove(out, in, size_t(next - in));
        out += next - in;
        in = std::find_if(next, end, [byte](uchar other) { return other != uchar(byte); });
    }
    return out;
}

/// Bytes that are counted at once: the counts fit a byte, so that the compiler makes it vector instructions.
constexpr qsizetype countedAtOnce = 192;

struct Counts {
    qint64 nuls = 0;
    qint64 lineFeeds = 0;
    qint64 returns = 0;
};

Counts countsOf(QByteArrayView bytes)
{
    Counts counts;
    const char *in = bytes.data();
    const char *const end = in + bytes.size();
    while (in < end) {
        const char *const blockEnd = in + std::min<qsizetype>(countedAtOnce, end - in);
        uchar nuls = 0;
        uchar lineFeeds = 0;
        uchar returns = 0;
        for (; in < blockEnd; ++in) {
            nuls = uchar(nuls + (*in == '\0'));
            lineFeeds = uchar(lineFeeds + (*in == '\n'));
            returns = uchar(returns + (*in == '\r'));
        }
        counts.nuls += nuls;
        counts.lineFeeds += lineFeeds;
        counts.returns += returns;
    }
    return counts;
}

/// LFs behind a CR.
qint64 countBoth(QByteArrayView bytes)
{
    qint64 count = 0;
    const char *in = bytes.data() + 1;
    const char *const end = bytes.data() + bytes.size();
    while (in < end) {
        const char *const blockEnd = in + std::min<qsizetype>(countedAtOnce, end - in);
        uchar inBlock = 0;
        for (; in < blockEnd; ++in)
            inBlock = uchar(inBlock + ((uchar(in[-1] ^ '\r') | uchar(in[0] ^ '\n')) == 0));
        count += inBlock;
    }
    return count;
}

} // namespace

qsizetype normalizeLineEnds(char *bytes, qsizetype size, ReturnCode returnCode)
{
    auto *const begin = reinterpret_cast<uchar *>(bytes);
    uchar *const end = begin + size;
    replaceByte(firstOf(0, begin, end), end, 0, 0xFF);
    if (returnCode == ReturnCode::Cr)
        replaceByte(firstOf('\r', begin, end), end, '\r', '\n');
    else if (returnCode == ReturnCode::CrLf)
        return removeByte(firstOf('\r', begin, end), end, '\r') - begin;
    return size;
}

void normalizeLineEnds(QByteArray &bytes, ReturnCode returnCode)
{
    bytes.truncate(normalizeLineEnds(bytes.data(), bytes.size(), returnCode));
}

void RewrittenCount::add(QByteArrayView bytes)
{
    constexpr qsizetype block = 16384; // is at hand for all that look at it
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(block, bytes.size()))) {
        const QByteArrayView part = bytes.first(std::min(block, bytes.size()));
        const Counts counts = countsOf(part);
        m_nuls += counts.nuls;
        m_lineFeeds += counts.lineFeeds;
        m_returns += counts.returns;
        m_both += m_last == '\r' && part.front() == '\n' ? 1 : 0;
        if (counts.returns > 0)
            m_both += countBoth(part);
        m_last = part.back();
    }
}

RewrittenBytes RewrittenCount::with(ReturnCode returnCode) const
{
    if (returnCode == ReturnCode::CrLf)
        return { m_nuls, m_lineFeeds - m_both, m_returns - m_both };
    return { m_nuls, returnCode == ReturnCode::Cr ? m_lineFeeds : 0, 0 };
}
