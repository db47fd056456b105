#pragma once

#include <QStringView>

#include <vector>

/// Where the characters that people see begin and end: cursor, painting and wrapping all go by this.
///
/// The rules of extended grapheme clusters over Qt's character database: combining marks, spacing vowel
/// signs, surrogate pairs, emoji joined into one, flags and conjoining syllables stay whole. A lone surrogate
/// is a character by itself whatever follows it, and so is a half-width voiced sound mark, which has a byte
/// and a cell of its own. A text is taken to begin with a new character.

/// Place behind the character that begins at `start`. Cost: the character's length.
qsizetype graphemeEnd(QStringView text, qsizetype start);

/// The last place 2..at, at < size, where a character begins whatever the text before `text` is; 0 where
/// there is none.
qsizetype certainStart(QStringView text, qsizetype at);

/// Start of the character that unit `at` is part of; `at` itself at the text's end. Looks back no further
/// than to two characters that never join.
qsizetype graphemeStart(QStringView text, qsizetype at);

/// 0, every place between two characters, and the text's length.
std::vector<qsizetype> graphemeBoundaries(QStringView text);

/// Whether there are texts in which these two, side by side, are one character. No text but the two is looked
/// at: yes for any two letters of flags.
bool mayJoin(char32_t before, char32_t behind);

/// Whether a unit is a character by itself unless its neighbour is one for which this does not hold; no
/// surrogate is.
bool standsAlone(char16_t unit);

/// Whether what follows `before` within one character takes no room of its own: the second letter of a flag,
/// and an emoji that is joined to another.
bool isMerged(char32_t before, char32_t behind);
