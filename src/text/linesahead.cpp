#include "text/linesahead.h"

#include <utility>

LinesAhead::LinesAhead(Offset start, TextStore &&lines)
    : m_start(start)
    , m_lines(std::move(lines))
{
}

LinesAhead::Edit LinesAhead::find(const TextChange &change) const
{
    const Offset end = change.offset + change.removed;
    if (end < range().start) // so the LF before them stays
        return Edit::Before;
    if (change.offset > range().end)
        return Edit::Behind;
    return holds(change.offset) && holds(end) ? Edit::Inside : Edit::Across;
}

void LinesAhead::moveBy(qint64 units)
{
    m_start += units;
    m_isPlaced = false;
}

void LinesAhead::place(RowIndex first, RowIndex last)
{
    m_first = first;
    m_ownRows = last - first + 1;
    m_isPlaced = true;
}

TextStore::Row LinesAhead::row(RowIndex row) const
{
    TextStore::Row found = m_lines.row(inLines(row));
    found.start += m_start.value();
    return found;
}

RowCol LinesAhead::rowColAt(Offset offset) const
{
    RowCol found = m_lines.rowColAt(Offset(offset - m_start));
    found.row += m_first.value();
    return found;
}

Subpixels LinesAhead::xAt(RowCol position) const
{
    return m_lines.xAt({ inLines(position.row), position.column });
}

qint64 LinesAhead::columnAt(RowIndex row, Subpixels x) const
{
    return m_lines.columnAt(inLines(row), x);
}
