// Detection and the line-end pass over any bytes: results within their tables, sizes as the rules say, and
// what is told about another code is true.

#include "codec/codecs.h"
#include "document/detection.h"
#include "document/fittingcode.h"
#include "document/lineends.h"
#include "document/utf16text.h"
#include "fuzz/bytes.h"
#include "tests/codec/shorttexts.h"
#include "text/lonesurrogates.h"

namespace {

void checkCharCode(const QByteArray &bytes)
{
    const CharCode code = detectCharCode(bytes, CharCode::ShiftJis);
    require(infoOf(code).code == code);
    for (const CharCode readAs : { code, CharCode::Utf8, CharCode::ShiftJis, CharCode::Euc, CharCode::Jis }) {
        const qint64 undecodable = loneSurrogates(decoded(infoOf(readAs).codec(), bytes));
        const auto whole = [&bytes](CharCode, const auto &take) { take(bytes); };
        const auto other = otherFittingCode(whole, readAs, readAs == code, undecodable);
        require(!other || loneSurrogates(decoded(infoOf(*other).codec(), bytes)) == 0);
    }
}

void checkUtf16(const QByteArray &bytes)
{
    const auto form = utf16FormOf(bytes);
    if (form)
        require(decoded(utf8Codec(), utf8FromUtf16(bytes, *form)) == decoded(codecOf(*form), bytes));
}

void checkLineEnds(const QByteArray &bytes)
{
    const ReturnCode detected = detectReturnCode(bytes, ReturnCode::None);
    require(detected == ReturnCode::None || bytes.contains('\r') || bytes.contains('\n'));
    for (const ReturnCode code : { ReturnCode::None, ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf }) {
        QByteArray normalized = bytes;
        normalizeLineEnds(normalized, code);
        const qsizetype dropped = code == ReturnCode::CrLf ? bytes.count('\r') : 0;
        const bool crStays = code == ReturnCode::None || code == ReturnCode::Lf;
        require(normalized.size() == bytes.size() - dropped && !normalized.contains('\0'));
        require(normalized.count('\r') == (crStays ? bytes.count('\r') : 0));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    checkCharCode(bytes);
    checkUtf16(bytes);
    checkLineEnds(bytes);
    return 0;
}
