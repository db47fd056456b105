#pragma once

#include "text/textstore.h"
#include "text/wordbounds.h"

#include <optional>

enum class Move {
    CharacterBack,
    CharacterForward,
    WordBack,
    WordForward,
    RowUp,
    RowDown,
    PageUp,
    PageDown,
    RowStart,
    RowEnd,
    TextStart,
    TextEnd
};

/// One character to either side.
constexpr bool isByCharacter(Move move)
{
    return move == Move::CharacterBack || move == Move::CharacterForward;
}

/// What a move does with the selection.
enum class Selecting { Drop, Extend };

/// Where the cursor of one text stands. The text between it and its anchor is selected.
///
/// Knows the text and no view. Whoever edits the text sets it anew. Cost: O(log n) each.
class TextCursor {
public:
    /// At the start of the text, which must outlive it.
    explicit TextCursor(const TextStore &store);

    CursorPlace place() const { return m_place; }
    CursorPlace anchor() const { return m_anchor; }
    RowCol position() const;
    RowIndex row() const { return position().row; }
    bool hasSelection() const { return m_place.offset != m_anchor.offset; }
    TextRange selection() const;
    /// The ends of the selection, the earlier one first.
    CursorPlace selectionBegin() const;
    CursorPlace selectionEnd() const;

    void set(CursorPlace place, CursorPlace anchor);
    /// The same with nothing selected.
    void set(CursorPlace place) { set(place, place); }

    /// Where moves up and down go to in each row: logical pixels from its start. Kept from one to the next.
    std::optional<qreal> goalX() const { return m_goalX; }
    void setGoalX(std::optional<qreal> x) { m_goalX = x; }

    /// Whether typed characters replace those they are typed before, which a block shows in place of a bar.
    bool overwrites() const { return m_overwrites; }
    void setOverwrites(bool on) { m_overwrites = on; }

    /// Where a move leads, of those that need no view: not up or down.
    CursorPlace target(Move move) const;
    /// The place of the text that is nearest to a row and a column.
    CursorPlace nearest(RowCol position) const;

private:
    const TextStore &m_store;
    CursorPlace m_place;
    CursorPlace m_anchor;
    std::optional<qreal> m_goalX;
    bool m_overwrites = false;
};

/// The line that holds `offset`, with its LF.
TextRange wholeLineAt(const TextStore &store, Offset offset);
