#pragma once

#include "rows/rowlayout.h"

/// One row's text as the screen shows it, inserted text included, and where the store has its characters.
///
/// Lengths are device pixels. Cost: O(log n) each, whatever the row's length.
class DisplayedRow {
public:
    DisplayedRow(
        const TextStore &store, RowIndex row, const FontMeasure &measure, const InsertedText &inserted);

    RowIndex row() const { return m_row; }
    qint64 length() const { return m_place.length + m_inserted.text.size(); }
    bool endsLine() const { return m_place.endsLine; }
    QString text(qint64 column, qint64 count) const;

    const FontMeasure &measure() const { return m_measure; }
    qint64 advance(char32_t codePoint) const;
    qint64 tabStop() const { return m_tabStop; }
    /// Where a TAB at `x` ends.
    qint64 afterTab(qint64 x) const { return (x / m_tabStop + 1) * m_tabStop; }
    /// Left bearing of the first character.
    qint64 bearing() const { return m_bearing; }
    /// Whether the first segment holds a TAB, from which on characters stand on the tab stops and not left of
    /// them.
    bool hasTabAtStart() const { return m_hasTabAtStart; }

    /// Rows are laid out in segments of a few thousand units. They begin at fixed places of the text, moved
    /// back where they would cut what is shaped together, and always to the start of a character: behind a
    /// very long one there are empty segments.
    qint64 segmentStart(qint64 segment) const;
    qint64 segmentOf(qint64 column) const;
    /// Where the store has a column, by the advances of the characters before it.
    qint64 nominalX(qint64 column) const;
    qint64 nominalColumn(qint64 x) const;

private:
    const TextStore &m_store;
    RowIndex m_row;
    TextStore::Row m_place;
    const FontMeasure &m_measure;
    InsertedText m_inserted;
    qint64 m_insertedWidth = 0;
    qint64 m_tabStop = 1;
    qint64 m_bearing = 0;
    bool m_hasTabAtStart = false;
};
