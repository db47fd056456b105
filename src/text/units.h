#pragma once

#include <QtGlobal>

#include <compare>

/// A place in the text, counted in one unit from 0. Places in different units do not convert into one
/// another, nor into plain numbers unless they are asked to; the distance of two is a plain number.
template <typename Unit> class Position {
public:
    constexpr Position() = default;
    constexpr explicit Position(qint64 value)
        : m_value(value)
    {
    }
    constexpr qint64 value() const { return m_value; }

    friend constexpr auto operator<=>(Position, Position) = default;
    friend constexpr Position operator+(Position place, qint64 count)
    {
        return Position(place.m_value + count);
    }
    friend constexpr Position operator-(Position place, qint64 count)
    {
        return Position(place.m_value - count);
    }
    friend constexpr qint64 operator-(Position behind, Position before)
    {
        return behind.m_value - before.m_value;
    }

private:
    qint64 m_value = 0;
};

/// A logical line: ended by LF, whatever wrapping makes of it.
using LineIndex = Position<struct LineUnit>;

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
