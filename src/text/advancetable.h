#pragma once

#include "text/units.h"

#include <array>
#include <functional>
#include <memory>
#include <unordered_map>

/// Width of every character of one font at one scale, measured once each and then read from a table.
///
/// Units: Subpixels. A low surrogate and a combining mark are 0 wide: they belong to the character
/// before. Cost: one array read for a character that was seen before, else one call of the measuring
/// function; 128 KiB of memory. Threads: none; one thread uses it.
class AdvanceTable {
public:
    /// `measure` gives the width of one code point (0 <= width < 65535); TAB is never asked for.
    using Measure = std::function<int(char32_t codePoint)>;
    static constexpr quint16 unknown = 0xffff;
    explicit AdvanceTable(Measure measure);
    /// Knows what `known` knows, and measures the rest in another way.
    AdvanceTable(const AdvanceTable &known, Measure measure);

    /// Width of any unit but the two halves of a surrogate pair.
    int advance(char16_t unit) const
    {
        const quint16 width = m_units[unit];
        return width != unknown ? width : measureUnit(unit);
    }
    /// Width of any code point.
    int advanceOf(char32_t codePoint) const;
    /// Widths of U+0000..U+00FF, all measured but TAB and LF, which are 0: for loops over text of one byte a
    /// character.
    const std::array<quint16, 256> &latin1() const { return m_latin1; }
    /// Widths of all units, for loops over text: `unknown` for what was not measured yet, and always for TAB,
    /// LF, surrogates and what joins its neighbours, which no such loop may take for plain characters.
    const quint16 *units() const { return m_units.get(); }

private:
    int measureUnit(char16_t unit) const;
    int measured(char32_t codePoint) const;

    Measure m_measure;
    std::array<quint16, 256> m_latin1{};
    std::unique_ptr<quint16[]> m_units;
    /// Of units that m_units does not tell, made when the first one is met.
    mutable std::unique_ptr<quint16[]> m_others;
    mutable std::unordered_map<char32_t, int> m_supplementary;
};
