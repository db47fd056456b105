#include "document/detection.h"
#include "document/lineends.h"

#include <cstdlib>

/// Detection and the line-end pass over any bytes: results within their tables, sizes as the rules say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const CharCode charCode = detectCharCode(bytes, CharCode::ShiftJis);
    if (charCode < CharCode::Binary || charCode > CharCode::Ascii)
        std::abort();
    const ReturnCode returnCode = detectReturnCode(bytes, ReturnCode::None);
    if (returnCode != ReturnCode::None && !bytes.contains('\r') && !bytes.contains('\n'))
        std::abort();
    for (const ReturnCode code : { ReturnCode::None, ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf }) {
        QByteArray normalized = bytes;
        normalizeLineEnds(normalized, code);
        const qsizetype dropped = code == ReturnCode::CrLf ? bytes.count('\r') : 0;
        const bool crStays = code == ReturnCode::None || code == ReturnCode::Lf;
        if (normalized.size() != bytes.size() - dropped || normalized.contains('\0'))
            std::abort();
        if (normalized.count('\r') != (crStays ? bytes.count('\r') : 0))
            std::abort();
    }
    return 0;
}
