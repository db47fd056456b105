#include "codec/charcode.h"

#include "codec/codecs.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr CharCodeInfo charCodes[] = {
    { CharCode::Binary, "Binary"_L1, {}, latin1Codec, 1, 2, false },
    { CharCode::Unicode, "Unicode"_L1, {}, utf8Codec, 2, 2, true },
    { CharCode::Utf8, "UTF8"_L1, "UTF-8"_L1, utf8Codec, 1, 3, false },
    { CharCode::ShiftJis, "Shift-JIS"_L1, "Shift-JIS"_L1, shiftJisCodec, 1, 2, false },
    { CharCode::Euc, "EUC"_L1, "EUC"_L1, eucCodec, 1, 2, false },
    { CharCode::Jis, "JIS"_L1, "JIS"_L1, jisCodec, 1, 2, true },
    { CharCode::Ascii, "Shift-JIS"_L1, {}, shiftJisCodec, 1, 2, false },
};
constexpr CharCodeInfo unknownCode{ CharCode::ShiftJis, "????"_L1, {}, shiftJisCodec, 1, 2, false };

} // namespace

const CharCodeInfo &infoOf(CharCode code)
{
    const auto *const found = std::ranges::find(charCodes, code, &CharCodeInfo::code);
    return found == std::end(charCodes) ? unknownCode : *found;
}

bool isCodeOfText(CharCode code)
{
    return code != CharCode::Binary && code != CharCode::Unicode;
}

const TextCodec &codecToRead(CharCode code, QByteArrayView bytes)
{
    return code == CharCode::Unicode ? codecForContent(bytes) : infoOf(code).codec();
}

CharCode codeToRead(CharCode code, QByteArrayView bytes)
{
    const TextCodec &codec = codecToRead(code, bytes);
    if (&codec == &latin1Codec())
        return CharCode::Binary;
    return &codec == &utf8Codec() ? CharCode::Utf8 : code;
}

std::optional<CharCode> requestedCharCode(int code)
{
    return code == 0 ? std::nullopt : std::optional(CharCode(code));
}
