#pragma once

#include <QtGlobal>

/// A place in the text as the screen shows it. `row` counts display rows (wrapping makes several rows of one
/// logical line), `column` counts UTF-16 units from the row's start; both from 0.
struct RowCol {
    qint64 row = 0;
    qint64 column = 0;
    friend auto operator<=>(const RowCol &, const RowCol &) = default;
};

/// Where a cursor stands. Between two rows of a wrapped line one offset is two places: the end of the upper
/// row and the start of the lower one. Anywhere else `atRowEnd` says nothing.
struct CursorPlace {
    qint64 offset = 0;
    bool atRowEnd = false; ///< the end of the upper row is meant
    friend bool operator==(const CursorPlace &, const CursorPlace &) = default;
};

/// A horizontal distance in 1/64 device pixel: characters stand on whole device pixels at every scale, so
/// sums over a row are exact and convert to the screen without rounding. 64 bits wide because one row may
/// hold a hundred million characters.
using Subpixels = qint64;
constexpr Subpixels subpixelsPerPixel = 64;
