#pragma once

#include <QtGlobal>

/// How a character is placed and drawn.
enum class CharClass : quint8 {
    Plain, ///< by its own advance, whatever its neighbours are
    HexBox, ///< nothing a font could show: drawn as its code in a box
    Extend, ///< belongs to the character before: combining marks, joiners, skin tones, conjoining vowels
    Complex, ///< its form depends on its neighbours: Indic scripts, Thai, flags …
    RightToLeft, ///< the same, and written from right to left: Arabic, Hebrew …
};

/// The class of any code point, lone surrogates included; TAB and LF are not asked for. From the character
/// database of Qt; no font is looked at.
CharClass charClass(char32_t codePoint);

/// Whether an Extend character takes no room of its own.
bool isZeroWidth(char32_t codePoint);

/// Ideographs and Hangul syllables: thousands of characters of one and the same width in every font.
bool isIdeograph(char32_t codePoint);

/// Digits and punctuation that right-to-left text on both sides carries along.
bool isNeutral(char32_t codePoint);
