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
