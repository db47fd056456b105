#include "document/lineends.h"

namespace {

void replaceByte(uchar *in, const uchar *end, uchar byte, uchar replacement)
{
    for (; in != end; ++in)
        *in = *in == byte ? replacement : *in;
}

/// Returns where the bytes end without the ones taken out.
uchar *removeByte(uchar *in, const uchar *end, uchar byte)
{
    uchar *out = in;
    for (; in != end; ++in) {
        *out = *in;
        out += *in != byte;
    }
    return out;
}

/// Its size where it has none.
qsizetype firstOf(char byte, const QByteArray &bytes)
{
    const qsizetype found = bytes.indexOf(byte);
    return found == -1 ? bytes.size() : found;
}

/// How often a byte occurs with another one before it, and how often without.
struct Counts {
    qint64 behind = 0;
    qint64 alone = 0;
};

Counts countBehind(const QByteArray &bytes, char before, char byte)
{
    Counts counts;
    for (qsizetype at = bytes.indexOf(byte); at != -1; at = bytes.indexOf(byte, at + 1))
        ++(at > 0 && bytes[at - 1] == before ? counts.behind : counts.alone);
    return counts;
}

} // namespace

void normalizeLineEnds(QByteArray &bytes, ReturnCode returnCode)
{
    auto *const begin = reinterpret_cast<uchar *>(bytes.data());
    const uchar *const end = begin + bytes.size();
    replaceByte(begin + firstOf(0, bytes), end, 0, 0xFF);
    uchar *const firstCr = begin + firstOf('\r', bytes);
    if (returnCode == ReturnCode::Cr)
        replaceByte(firstCr, end, '\r', '\n');
    else if (returnCode == ReturnCode::CrLf)
        bytes.truncate(removeByte(firstCr, end, '\r') - begin);
}

RewrittenBytes countRewritten(const QByteArray &bytes, ReturnCode returnCode)
{
    RewrittenBytes counts;
    const qsizetype firstNul = bytes.indexOf('\0');
    if (firstNul != -1)
        counts.nul = bytes.sliced(firstNul).count('\0');
    if (returnCode == ReturnCode::Cr)
        counts.lf = bytes.count('\n');
    if (returnCode != ReturnCode::CrLf)
        return counts;
    const Counts lineFeeds = countBehind(bytes, '\r', '\n');
    counts.lf = lineFeeds.alone;
    counts.cr = bytes.count('\r') - lineFeeds.behind;
    return counts;
}
