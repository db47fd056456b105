#include "widget/cursormoves.h"

#include "document/editabletext.h"
#include "widget/cursorfollowers.h"
#include "widget/primaryselection.h"
#include "widget/rowupdates.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

static bool isPage(Move move)
{
    return move == Move::PageUp || move == Move::PageDown;
}

static bool isVertical(Move move)
{
    return move == Move::RowUp || move == Move::RowDown || isPage(move);
}

CursorMoves::CursorMoves(EditableText &document, TextCursor &cursor, const TextView &view,
    RowUpdates &updates, ViewScroller &scroller, PrimarySelection &primary, CursorFollowers &followers)
    : m_document(document)
    , m_store(document.store())
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_primary(primary)
    , m_followers(followers)
{
}

CursorPlace CursorMoves::targetOfRows(qint64 rows)
{
    const RowCol from = m_cursor.position();
    if (!m_cursor.goalX())
        m_cursor.setGoalX(m_view.xOf(from));
    const RowIndex row = qBound(RowIndex(), from.row + rows, m_store.lastRow());
    return row == from.row ? m_cursor.place() : m_view.placeAtX(row, *m_cursor.goalX());
}

CursorPlace CursorMoves::target(Move move)
{
    switch (move) {
    case Move::RowUp:
        return targetOfRows(-1);
    case Move::RowDown:
        return targetOfRows(1);
    case Move::PageUp:
        return targetOfRows(-m_scroller.rowsOfPage());
    case Move::PageDown:
        return targetOfRows(m_scroller.rowsOfPage());
    default:
        return m_cursor.target(move);
    }
}

void CursorMoves::moveBy(Move move, Selecting selecting)
{
    // Without Shift a step to the side first of all leaves the selection, at the side it goes to.
    if (selecting == Selecting::Drop && m_cursor.hasSelection() && isByCharacter(move)) {
        const TextRange selected = m_cursor.selection();
        moveTo({ move == Move::CharacterBack ? selected.start : selected.end }, selecting);
        return;
    }
    const CursorPlace to = target(move);
    const std::optional<qreal> goal = isVertical(move) ? m_cursor.goalX() : std::nullopt;
    // The view goes along with the cursor, which so keeps its place in it.
    if (isPage(move))
        m_scroller.turnPage(move == Move::PageUp ? -1 : 1);
    moveTo(to, selecting);
    m_cursor.setGoalX(goal);
    if (selecting == Selecting::Extend)
        m_primary.offer();
    else if (move == Move::TextEnd)
        m_document.seekEnd();
}

void CursorMoves::moveTo(CursorPlace place, Selecting selecting)
{
    set(place, selecting == Selecting::Extend ? m_cursor.anchor() : place);
    if (!m_isQuiet)
        m_scroller.showCursor();
}

void CursorMoves::select(CursorPlace from, CursorPlace to)
{
    set(to, from);
    if (!m_isQuiet)
        m_scroller.showCursor();
}

void CursorMoves::selectAll()
{
    set({ m_store.end() }, {});
    m_primary.offer();
}

void CursorMoves::set(CursorPlace place, CursorPlace anchor)
{
    m_document.history().breakJoining();
    m_cursor.setGoalX(std::nullopt);
    if (m_isQuiet) {
        m_cursor.set(place, anchor);
        return;
    }
    const bool sameAnchor = anchor.offset == m_cursor.anchor().offset;
    if (m_cursor.hasSelection() && (place.offset == anchor.offset || !sameAnchor))
        m_primary.freeze();
    const RowIndex oldRow = m_cursor.row();
    if (!sameAnchor)
        m_updates.updateSelection();
    m_cursor.set(place, anchor);
    const RowIndex newRow = m_cursor.row();
    if (sameAnchor)
        m_updates.updateRows(qMin(oldRow, newRow), qMax(oldRow, newRow));
    else
        m_updates.updateSelection();
    m_updates.updateRow(oldRow);
    m_updates.updateRow(newRow);
    m_followers.tell();
}
