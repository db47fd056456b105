#include "widget/qmultilineedit_p.h"

#include "text/cursorstops.h"
#include "widget/viewscrollbar.h"

void QMultiLineEdit::Private::beginOperation()
{
    if (operations++ > 0)
        return;
    damage = { std::nullopt, store.rowCount(), store.lineCount() };
    announcer.keep(store);
    freezePrimary();
    updateMarkedRows();
    updateRow(rowColOf(cursor).row);
}

void QMultiLineEdit::Private::endOperation()
{
    if (--operations > 0)
        return;
    const bool changed = damage.change.has_value();
    {
        const ViewScrollBar::OneChange longerAndMoved(*verticalBar);
        if (changed) {
            edited = true;
            goalX.reset();
            updateScrollBars();
            repaintDamage();
            announcer.announceChange(store, *damage.change);
        }
        updateMarkedRows();
        updateRow(rowColOf(cursor).row);
        makeCursorVisible();
    }
    announceCursor();
    if (changed)
        emit q->textChanged();
}

QMultiLineEdit::Batch::Batch(QMultiLineEdit &edit)
    : m_edit(edit)
{
    m_edit.d->beginOperation();
}

QMultiLineEdit::Batch::~Batch()
{
    m_edit.d->endOperation();
}

void QMultiLineEdit::Private::replace(qint64 offset, qint64 removed, QStringView inserted, Joining joining)
{
    Q_ASSERT(operations > 0);
    if (removed == 0 && inserted.isEmpty())
        return;
    if (undoEnabled)
        history.replace(store, offset, removed, inserted, joining);
    else
        store.replace(offset, removed, inserted);
    noteChange({ offset, removed, inserted.size() });
}

void QMultiLineEdit::Private::replaceByPiece(qint64 offset, qint64 removed, const TextPiece &inserted)
{
    Q_ASSERT(operations > 0);
    if (removed == 0 && inserted.isEmpty())
        return;
    if (undoEnabled)
        history.replace(store, offset, removed, inserted);
    else
        store.exchange(offset, removed, inserted);
    noteChange({ offset, removed, inserted.length() });
}

void QMultiLineEdit::Private::noteChange(const TextChange &change)
{
    damage.change = damage.change ? damage.change->then(change) : change;
}

/// Rows above the first changed one stay, but for the one it continues, which may have room for more now.
/// Rows below the last changed line stay when neither their count nor that of the lines, which may be shown
/// beside them, has changed.
void QMultiLineEdit::Private::repaintDamage()
{
    qint64 first = store.rowColAt(damage.change->offset).row;
    if (first > 0 && !store.row(first - 1).endsLine)
        --first;
    qint64 last = store.rowCount() + visibleRows();
    if (store.rowCount() == damage.rowsBefore && store.lineCount() == damage.linesBefore) {
        const LineIndex line = store.lineAt(damage.change->offset + damage.change->inserted);
        last = line < store.lastLine() ? store.rowOfLine(line + 1) - 1 : store.rowCount() - 1;
    }
    updateRows(first, last);
}

void QMultiLineEdit::Private::reportAvailability()
{
    const auto report = [this](bool &said, bool now, void (QMultiLineEdit::*signal)(bool)) {
        if (said == now)
            return;
        said = now;
        emit(q->*signal)(now);
    };
    report(reported.undo, history.canUndo(), &QMultiLineEdit::undoAvailable);
    report(reported.redo, history.canRedo(), &QMultiLineEdit::redoAvailable);
    report(reported.marked, hasMarked(), &QMultiLineEdit::copyAvailable);
}

void QMultiLineEdit::Private::startAnew(TextStore &&text)
{
    freezePrimary();
    const qint64 gone = store.length();
    announcer.keep(store);
    store = std::move(text);
    store.setLayoutRule(layoutRule());
    history.clear();
    cursor = anchor = {};
    goalX.reset();
    top = left = 0;
    updateScrollBars();
    updateView();
    edited = true;
    announcer.announceChange(store, { 0, gone, store.length() });
    announceCursor();
    emit q->textChanged();
}

void QMultiLineEdit::Private::insertText(QStringView text, Joining joining)
{
    Operation operation(*this);
    const TextRange old = marked();
    replace(old.start, old.end - old.start, text, joining);
    cursor = anchor = { old.start + text.size() };
}

void QMultiLineEdit::Private::insertPiece(const TextPiece &text)
{
    Operation operation(*this);
    const TextRange old = marked();
    replaceByPiece(old.start, old.end - old.start, text);
    cursor = anchor = { old.start + text.length() };
}

/// End of the characters that `count` typed ones replace: no line end among them.
static qint64 overwrittenEnd(const TextStore &store, qint64 offset, qint64 count)
{
    while (count-- > 0 && offset < store.length() && store.at(offset) != u'\n')
        offset = nextCursorStop(store, offset);
    return offset;
}

/// A place between `from` and `to` goes to `from`, one behind them goes along with its text.
void QMultiLineEdit::Private::replaceRange(qint64 from, qint64 to, QStringView text)
{
    const auto kept = [&](CursorPlace place) {
        if (place.offset < from)
            return place;
        return place.offset < to ? CursorPlace{ from }
                                 : CursorPlace{ place.offset + text.size() - (to - from) };
    };
    Operation operation(*this);
    replace(from, to - from, text);
    cursor = kept(cursor);
    anchor = kept(anchor);
}

void QMultiLineEdit::Private::typeText(const QString &text)
{
    if (overwrite && !hasMarked()) {
        Operation operation(*this);
        const qint64 from = cursor.offset;
        replace(from, overwrittenEnd(store, from, text.toUcs4().size()) - from, text, Joining::Typing);
        cursor = anchor = { from + text.size() };
        return;
    }
    insertText(text, Joining::Typing);
}

void QMultiLineEdit::Private::breakLine()
{
    insertText(u"\n", Joining::Never);
    emit q->returnPressed();
}

void QMultiLineEdit::Private::erase(qint64 from, qint64 to, Joining joining)
{
    Operation operation(*this);
    replace(from, to - from, {}, joining);
    cursor = anchor = { from };
}

bool QMultiLineEdit::Private::eraseMarked()
{
    if (!hasMarked())
        return false;
    erase(marked().start, marked().end, Joining::Never);
    return true;
}

void QMultiLineEdit::Private::eraseBack()
{
    if (!eraseMarked())
        erase(previousCursorStop(store, cursor.offset), cursor.offset, Joining::Erasing);
}

void QMultiLineEdit::Private::eraseForward()
{
    if (!eraseMarked())
        erase(cursor.offset, nextCursorStop(store, cursor.offset), Joining::Erasing);
}

void QMultiLineEdit::Private::eraseWordBack()
{
    if (!eraseMarked())
        erase(previousWordStart(store, cursor.offset), cursor.offset, Joining::Never);
}

void QMultiLineEdit::Private::eraseWordForward()
{
    if (!eraseMarked())
        erase(cursor.offset, nextWordStart(store, cursor.offset), Joining::Never);
}

void QMultiLineEdit::Private::applyHistory(
    qint64 (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &))
{
    Operation operation(*this);
    const qint64 offset = (history.*step)(store, [this](const TextChange &change) { noteChange(change); });
    cursor = anchor = { offset };
}
