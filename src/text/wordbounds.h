#pragma once

#include "text/textstore.h"

/// Words of a text, for word moves and double clicks.
///
/// A word is neighbouring characters of one class: letters and digits of alphabetic scripts (with "_" and
/// combining marks), hiragana, katakana, ideographs, or punctuation. Blanks separate words; a line end is a
/// place of its own. The prolonged sound mark belongs to the kana before it. Cost: the length of the words
/// passed, at most 16 Ki units, so that a key stays quick in a line without any blank.

/// Start of the next word behind `offset`; at a line's end, the start of the next line.
Offset nextWordStart(const TextStore &store, Offset offset);
/// Start of the word before `offset`; at a line's start, the end of the line above.
Offset previousWordStart(const TextStore &store, Offset offset);

/// The range of one class around `offset`: a word, punctuation or blanks; empty in an empty line.
TextRange wordAt(const TextStore &store, Offset offset);
