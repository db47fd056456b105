#pragma once

#include <QStringView>

#include <vector>

/// Where the characters that people see begin and end in a text: 0, every place between two of them, and the
/// text's length. Combining marks, surrogate pairs, emoji sequences and conjoining syllables stay whole; a
/// lone surrogate is a character by itself whatever follows it.
std::vector<qsizetype> graphemeBoundaries(QStringView text);
