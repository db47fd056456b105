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

/// Calls `isCounted(i)` for each place and counts how often it is so, in blocks whose counts fit a byte,
/// which the compiler turns into vector instructions.
template <typename IsCounted> qint64 countPlaces(qsizetype from, qsizetype end, IsCounted &&isCounted)
{
    constexpr qsizetype block = 192;
    qint64 count = 0;
    while (from < end) {
        const qsizetype blockEnd = std::min(end, from + block);
        uchar inBlock = 0;
        for (; from < blockEnd; ++from)
            inBlock = uchar(inBlock + (isCounted(from) ? 1 : 0));
        count += inBlock;
    }
    return count;
}

qint64 countOf(char byte, QByteArrayView bytes)
{
    const char *const data = bytes.data();
    return countPlaces(0, bytes.size(), [=](qsizetype i) { return data[i] == byte; });
}

qint64 countBoth(QByteArrayView bytes)
{
    const char *const data = bytes.data();
    return countPlaces(1, bytes.size(),
        [=](qsizetype i) { return (uchar(data[i - 1] ^ '\r') | uchar(data[i] ^ '\n')) == 0; });
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
        const char *const end = part.data() + part.size();
        if (firstOf('\0', part.data(), end) != end)
            m_nuls += countOf('\0', part);
        m_lineFeeds += countOf('\n', part);
        m_both += m_last == '\r' && part.front() == '\n' ? 1 : 0;
        if (firstOf('\r', part.data(), end) != end) {
            m_returns += countOf('\r', part);
            m_both += countBoth(part);
        }
        m_last = part.back();
    }
}

RewrittenBytes RewrittenCount::with(ReturnCode returnCode) const
{
    if (returnCode == ReturnCode::CrLf)
        return { m_nuls, m_lineFeeds - m_both, m_returns - m_both };
    return { m_nuls, returnCode == ReturnCode::Cr ? m_lineFeeds : 0, 0 };
}
