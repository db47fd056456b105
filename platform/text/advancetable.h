#pragma once

#include "platform/text/units.h"

#include <array>
#include <functional>
#include <memory>
#include <unordered_map>

/// Width of every character of one font at one scale, measured once each and then read from a table.
///
/// Units: Subpixels. A low surrogate and a combining mark are 0 wide: they belong to the character
/// before. Cost: one or two array reads for a character that was seen before, else one call of the measuring
/// function. Threads: none; one thread uses it.
class AdvanceTable {
public:
    /// `measure` gives the width of one code point (0 <= width < 65535); TAB is never asked for.
    using Measure = std::function<int(char32_t codePoint)>;
    explicit AdvanceTable(Measure measure);

    /// Width of a unit that stands alone: anything but the two halves of a surrogate pair.
    int advance(char16_t unit) const
    {
        const quint16 width = m_pages[unit >> 8][unit & 0xff];
        return width != unknown ? width : measureUnit(unit);
    }
    /// Width of any code point.
    int advanceOf(char32_t codePoint) const;
    /// Widths of U+0000..U+00FF, all measured but TAB and LF, which are 0: for loops over text of one byte a
    /// character.
    const std::array<quint16, 256> &latin1() const { return m_latin1; }

private:
    static constexpr quint16 unknown = 0xffff;
    int measureUnit(char16_t unit) const;
    int measured(char32_t codePoint) const;

    Measure m_measure;
    std::array<quint16, 256> m_latin1{};
    mutable std::array<const quint16 *, 256> m_pages; ///< of one shared page until a character is seen
    mutable std::array<std::unique_ptr<quint16[]>, 256> m_seenPages;
    mutable std::unordered_map<char32_t, int> m_supplementary;
};
