#pragma once

#include "text/textchange.h"
#include "text/textstore.h"

/// Whole lines of a text that have the rows of another layout than the text, which is on its way to it. Each
/// line begins its rows anew, so those of the text itself go on before and behind:
///
///     the text's own rows      aa bb     aa cc cc     dd ee
///     its lines ahead                    AAC CCC C
///     the rows that are shown  aa bb     AAC CCC C    dd ee
///
/// Cost: that of the questions to a store.
class LinesAhead {
public:
    /// `lines` is their text, without the LF at the end, which begins at `start` of the whole one.
    LinesAhead(Offset start, TextStore &&lines);

    const TextStore &lines() const { return m_lines; }
    TextRange range() const { return { m_start, m_start + m_lines.length() }; }
    bool holds(Offset offset) const { return range().start <= offset && offset <= range().end; }

    /// Where an edit of the whole text lies. It is Across where a line is partly here or joined with one that
    /// is not: then they are to be laid out anew.
    enum class Edit { Before, Inside, Behind, Across };
    Edit find(const TextChange &change) const;
    /// Goes along with an edit before them.
    void moveBy(qint64 units);
    /// Has them edited as the text was; `edit` is called with the lines.
    template <typename Function> void edit(Function &&edit)
    {
        m_isPlaced = false;
        edit(m_lines);
    }

    /// To be told after an edit, before anything below is asked: the text's own rows, of which they take the
    /// place.
    bool isPlaced() const { return m_isPlaced; }
    void place(RowIndex first, RowIndex last);

    bool holds(RowIndex row) const { return m_first <= row && row < m_first + m_lines.rowCount(); }
    /// Rows that they have more than their text has of its own; below 0 fewer.
    qint64 growth() const { return m_lines.rowCount() - m_ownRows; }
    /// A row that is not held, as it is counted in the text's own rows.
    RowIndex ownRow(RowIndex row) const { return row < m_first ? row : row - growth(); }
    /// A row of the text's own that is shown, as it is counted in those that are.
    RowIndex shownRow(RowIndex own) const { return own < m_first ? own : own + growth(); }

    /// As a store answers them; of rows and offsets that are held.
    TextStore::Row row(RowIndex row) const;
    RowCol rowColAt(Offset offset) const;
    Subpixels xAt(RowCol position) const;
    qint64 columnAt(RowIndex row, Subpixels x) const;

private:
    RowIndex inLines(RowIndex row) const { return RowIndex(row - m_first); }

    Offset m_start;
    TextStore m_lines;
    RowIndex m_first;
    qint64 m_ownRows = 0;
    bool m_isPlaced = false;
};
