#include "widget/textcursor.h"

#include "text/cursorstops.h"

TextCursor::TextCursor(const TextStore &store)
    : m_store(store)
{
}

RowCol TextCursor::position() const
{
    return m_store.rowColAt(m_place);
}

TextRange TextCursor::selection() const
{
    return { qMin(m_place.offset, m_anchor.offset), qMax(m_place.offset, m_anchor.offset) };
}

CursorPlace TextCursor::selectionBegin() const
{
    return m_anchor.offset < m_place.offset ? m_anchor : m_place;
}

CursorPlace TextCursor::selectionEnd() const
{
    return m_anchor.offset < m_place.offset ? m_place : m_anchor;
}

void TextCursor::set(CursorPlace place, CursorPlace anchor)
{
    m_place = place;
    m_anchor = anchor;
}

CursorPlace TextCursor::target(Move move) const
{
    switch (move) {
    case Move::CharacterBack:
        return { previousCursorStop(m_store, m_place.offset) };
    case Move::CharacterForward:
        return { nextCursorStop(m_store, m_place.offset) };
    case Move::WordBack:
        return { previousWordStart(m_store, m_place.offset) };
    case Move::WordForward:
        return { nextWordStart(m_store, m_place.offset) };
    case Move::RowStart:
        return m_store.placeAt({ row(), 0 });
    case Move::RowEnd:
        return m_store.placeAt({ row(), m_store.row(row()).length });
    case Move::TextStart:
        return {};
    case Move::TextEnd:
        return { m_store.end() };
    case Move::RowUp:
    case Move::RowDown:
    case Move::PageUp:
    case Move::PageDown:
        break;
    }
    Q_UNREACHABLE();
}

CursorPlace TextCursor::nearest(RowCol position) const
{
    const RowIndex row = qBound(RowIndex(), position.row, m_store.lastRow());
    return m_store.placeAt({ row, qBound<qint64>(0, position.column, m_store.row(row).length) });
}

TextRange wholeLineAt(const TextStore &store, Offset offset)
{
    const LineIndex line = store.lineAt(offset);
    const bool isLast = line == store.lastLine();
    return { store.lineStart(line), isLast ? store.end() : store.lineStart(line + 1) };
}
