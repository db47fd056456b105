#include "document/lineends.h"

#include <QByteArrayView>

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

struct LineEndCounts {
    qint64 lf = 0;
    qint64 cr = 0;
    qint64 crLf = 0;
};

/// Sums of a block fit into a byte, so that many bytes are counted at once.
LineEndCounts countLineEnds(QByteArrayView bytes)
{
    constexpr qsizetype blockBytes = 255;
    LineEndCounts counts;
    char before = 0;
    for (qsizetype at = 0; at < bytes.size(); at += blockBytes) {
        const QByteArrayView block = bytes.sliced(at, qMin(blockBytes, bytes.size() - at));
        uchar lf = 0;
        uchar cr = 0;
        uchar crLf = before == '\r' && block[0] == '\n';
        for (qsizetype i = 0; i < block.size(); ++i) {
            lf = static_cast<uchar>(lf + (block[i] == '\n'));
            cr = static_cast<uchar>(cr + (block[i] == '\r'));
        }
        for (qsizetype i = 1; i < block.size(); ++i)
            crLf = static_cast<uchar>(crLf + ((block[i - 1] == '\r') & (block[i] == '\n')));
        before = block.back();
        counts.lf += lf;
        counts.cr += cr;
        counts.crLf += crLf;
    }
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
    const LineEndCounts found = countLineEnds(bytes);
    counts.lf = found.lf - found.crLf;
    counts.cr = found.cr - found.crLf;
    return counts;
}
