#pragma once

#include "rows/fontmeasure.h"
#include "text/codepoint.h"

#include <QStringView>

#include <vector>

/// How each unit of a row is set.
enum class RunKind : quint8 {
    Single, ///< a character by itself
    LeftToRight, ///< part of a run that the toolkit shapes
    RightToLeft, ///< the same, read from right to left, with the digits and blanks inside it
};

/// Kind of every unit of `text`; one run is a sequence of units of one kind. Cost: O(length).
std::vector<RunKind> runKinds(QStringView text, const FontMeasure &measure);
