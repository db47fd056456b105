#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>

#include <optional>

class TextCodec;

/// Character codes of files; the values are those of settings and requests.
enum class CharCode : int {
    Binary = 0,
    Unicode = 1,
    Utf8 = 2,
    ShiftJis = 3,
    Euc = 4,
    Jis = 5,
    Ascii = 6, ///< only ever a result of detection; handled as Shift-JIS
};

/// What there is to know about a character code.
struct CharCodeInfo {
    CharCode code;
    QLatin1StringView name; ///< in titles and properties
    QLatin1StringView label; ///< in dialogs, the same in every language; null: not offered there
    const TextCodec &(*codec)(); ///< what files are written with
    /// What the properties count for a character: ASCII, line ends and half-width katakana; all others.
    int bytesOfNarrow;
    int bytesOfWide;
    /// What a byte means depends on those before its character, so parts of a text are decoded in order. In
    /// all other codes the bytes of ASCII are ASCII.
    bool hasState;
};

/// A value outside the enumeration is named "????" and handled as Shift-JIS.
const CharCodeInfo &infoOf(CharCode code);

/// Not the bytes or UTF-16 units that a file is read as when it is in no code of text.
bool isCodeOfText(CharCode code);

/// What a file with these bytes is read with: the code's codec, but for Unicode what the byte-order mark
/// says. Cost: a look at the first three.
const TextCodec &codecToRead(CharCode code, QByteArrayView bytes);
/// A code that has the same codec: Unicode alone where that is one of UTF-16.
CharCode codeToRead(CharCode code, QByteArrayView bytes);

/// A request as callers in int make it, where 0 means to detect or to keep.
std::optional<CharCode> requestedCharCode(int code);
