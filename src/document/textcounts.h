#pragma once

#include "codec/charcode.h"
#include "codec/returncode.h"

#include <QtGlobal>

class TextSnapshot;
class TextStore;
struct TextRange;

/// What the properties box says about a text, counted in UTF-16 units by the Shift-JIS classes of characters:
/// ASCII and half-width katakana (U+FF61 to U+FF9E) take one byte, all others two.
struct TextCounts {
    qint64 lineFeeds = 0;
    qint64 singleByteChars = 0;
    qint64 doubleByteChars = 0;

    TextCounts &operator+=(const TextCounts &more);
};

/// Of a range of a store or a snapshot; without a copy of it.
template <class Text> TextCounts countText(const Text &text, TextRange range);
/// Of the whole text.
TextCounts countText(const TextStore &text);

/// Bytes of the text as a file with that code and line end, by the classes alone: in UTF-8 a half-width
/// katakana counts as one byte, and Unicode has no byte-order mark.
qint64 fileSize(const TextCounts &counts, CharCode charCode, ReturnCode returnCode);
