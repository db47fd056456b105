#include "document/textfile.h"

#include <cstdlib>

/// Detection and the line-end pass over any bytes: results within their tables, sizes as the rules say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const int charCode = detectCharCode(bytes, CharCodeShiftJis);
    if (charCode < CharCodeBinary || charCode > CharCodeAscii)
        std::abort();
    const int returnCode = detectReturnCode(bytes, ReturnCodeNone);
    if (returnCode != ReturnCodeNone && !bytes.contains('\r') && !bytes.contains('\n'))
        std::abort();
    for (int code = ReturnCodeNone; code <= ReturnCodeLf; ++code) {
        QByteArray normalized = bytes;
        normalizeLineEnds(normalized, code);
        const qsizetype dropped = code == ReturnCodeCrLf ? bytes.count('\r') : 0;
        const bool crStays = code == ReturnCodeNone || code == ReturnCodeLf;
        if (normalized.size() != bytes.size() - dropped || normalized.contains('\0'))
            std::abort();
        if (normalized.count('\r') != (crStays ? bytes.count('\r') : 0))
            std::abort();
    }
    return 0;
}
