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

    constexpr Position &operator+=(qint64 count)
    {
        m_value += count;
        return *this;
    }
    constexpr Position &operator-=(qint64 count)
    {
        m_value -= count;
        return *this;
    }
    constexpr Position &operator++() { return *this += 1; }
    constexpr Position &operator--() { return *this -= 1; }

    // What the compiler compares with 0 in it is an ordering, no pointer.
    friend constexpr auto operator<=>(Position, Position) = default; // NOLINT(modernize-use-nullptr)
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

/// UTF-16 units from the start of a text: that of a document, a piece or a part of the tree that keeps it.
/// What is counted within a leaf or a chunk, in a row or a line, are plain numbers.
using Offset = Position<struct OffsetUnit>;

/// A logical line: ended by LF, whatever wrapping makes of it.
using LineIndex = Position<struct LineUnit>;

/// A display row: wrapping makes several of one logical line.
using RowIndex = Position<struct RowUnit>;

/// A place in the text as the screen shows it. `column` counts UTF-16 units from the row's start.
struct RowCol {
    RowIndex row;
    qint64 column = 0;
    friend auto operator<=>(const RowCol &, const RowCol &) = default;
};

/// Where a cursor stands. Between two rows of a wrapped line one offset is two places: the end of the upper
/// row and the start of the lower one. Anywhere else `atRowEnd` says nothing.
struct CursorPlace {
    Offset offset;
    bool atRowEnd = false; ///< the end of the upper row is meant
    friend bool operator==(const CursorPlace &, const CursorPlace &) = default;
};

/// The text between two offsets.
struct TextRange {
    Offset start;
    Offset end; ///< of the first unit behind it
    constexpr qint64 length() const { return end - start; }
    constexpr bool isEmpty() const { return start == end; }
    friend bool operator==(const TextRange &, const TextRange &) = default;
};

/// A horizontal distance in 1/64 device pixel: characters stand on whole device pixels at every scale, so
/// sums over a row are exact and convert to the screen without rounding. 64 bits wide because one row may
/// hold a hundred million characters.
using Subpixels = qint64;
constexpr Subpixels subpixelsPerPixel = 64;
