#include "widget/qmultilineedit_p.h"
#include "text/cursorstops.h"

CursorPlace QMultiLineEdit::Private::clamped(qint64 row, qint64 column) const
{
    row = qBound<qint64>(0, row, store.rowCount() - 1);
    return placeAt(row, qBound<qint64>(0, column, store.row(row).length));
}

TextRange QMultiLineEdit::Private::marked() const
{
    return { qMin(cursor.offset, anchor.offset), qMax(cursor.offset, anchor.offset) };
}

CursorPlace QMultiLineEdit::Private::movedByRows(qint64 rowCount)
{
    const RowCol from = rowColOf(cursor);
    if (!goalX)
        goalX = xOf(from);
    const qint64 row = qBound<qint64>(0, from.row + rowCount, store.rowCount() - 1);
    return row == from.row ? cursor : placeAtX(row, *goalX);
}

CursorPlace QMultiLineEdit::Private::moved(Move move)
{
    const RowCol at = rowColOf(cursor);
    switch (move) {
    case Move::CharacterBack:
        return { previousCursorStop(store, cursor.offset) };
    case Move::CharacterForward:
        return { nextCursorStop(store, cursor.offset) };
    case Move::WordBack:
        return { previousWordStart(store, cursor.offset) };
    case Move::WordForward:
        return { nextWordStart(store, cursor.offset) };
    case Move::RowUp:
        return movedByRows(-1);
    case Move::RowDown:
        return movedByRows(1);
    case Move::PageUp:
        return movedByRows(-qMax<qint64>(1, visibleRows() - 1));
    case Move::PageDown:
        return movedByRows(qMax<qint64>(1, visibleRows() - 1));
    case Move::RowStart:
        return placeAt(at.row, 0);
    case Move::RowEnd:
        return placeAt(at.row, store.row(at.row).length);
    case Move::TextStart:
        return {};
    case Move::TextEnd:
        return { store.length() };
    }
    Q_UNREACHABLE();
}

static bool isVertical(Move move)
{
    return move == Move::RowUp || move == Move::RowDown || move == Move::PageUp || move == Move::PageDown;
}

static bool isByCharacter(Move move)
{
    return move == Move::CharacterBack || move == Move::CharacterForward;
}

void QMultiLineEdit::Private::moveBy(Move move, Marking marking)
{
    // Without Shift a step to the side first of all leaves the marked text, at the side it goes to.
    if (marking == Marking::Drop && hasMarked() && isByCharacter(move)) {
        moveTo({ move == Move::CharacterBack ? marked().start : marked().end }, marking);
        return;
    }
    const CursorPlace to = moved(move);
    const std::optional<qreal> goal = isVertical(move) ? goalX : std::nullopt;
    if (move == Move::PageUp || move == Move::PageDown)
        scrollPage(move);
    moveTo(to, marking);
    goalX = goal;
    if (marking == Marking::Extend)
        offerPrimary();
}

/// The view goes along with the cursor, which so keeps its place in it.
void QMultiLineEdit::Private::scrollPage(Move move)
{
    const qint64 page = qMax<qint64>(1, visibleRows() - 1);
    setTop(move == Move::PageUp ? top - page : top + page);
}

void QMultiLineEdit::Private::moveTo(CursorPlace place, Marking marking)
{
    setCursorAndAnchor(place, marking == Marking::Extend ? anchor : place);
    if (operations == 0)
        makeCursorVisible();
}

void QMultiLineEdit::Private::mark(qint64 from, qint64 to)
{
    setCursorAndAnchor({ to }, { from });
    makeCursorVisible();
}

void QMultiLineEdit::Private::setCursorAndAnchor(CursorPlace to, CursorPlace from)
{
    history.breakJoining();
    goalX.reset();
    if (operations > 0) {
        // The operation's end shows it.
        cursor = to;
        anchor = from;
        return;
    }
    if (hasMarked() && (to.offset == from.offset || from.offset != anchor.offset))
        freezePrimary();
    const RowCol oldRow = rowColOf(cursor);
    if (from.offset != anchor.offset)
        updateMarkedRows();
    const bool sameAnchor = from.offset == anchor.offset;
    cursor = to;
    anchor = from;
    const RowCol newRow = rowColOf(cursor);
    if (sameAnchor)
        updateRows(qMin(oldRow.row, newRow.row), qMax(oldRow.row, newRow.row));
    else
        updateMarkedRows();
    updateRow(oldRow.row);
    updateRow(newRow.row);
    announceCursor();
}

void QMultiLineEdit::Private::announceCursor()
{
    restartBlink();
    tellInputMethod();
    announcer.announceCursor(cursor.offset, anchor.offset);
    reportAvailability();
}
