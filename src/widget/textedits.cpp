#include "widget/textedits.h"

#include "document/editabletext.h"
#include "text/cursorstops.h"
#include "widget/cursorfollowers.h"
#include "widget/cursormoves.h"
#include "widget/primaryselection.h"
#include "widget/rowupdates.h"
#include "widget/textannouncer.h"
#include "widget/textview.h"
#include "widget/viewscrollbar.h"
#include "widget/viewscroller.h"

namespace {

/// What is edited while it lives is undone as one step.
class UndoGroup {
public:
    explicit UndoGroup(UndoHistory &history)
        : m_history(history)
    {
        m_history.beginGroup();
    }
    ~UndoGroup() { m_history.endGroup(); }
    Q_DISABLE_COPY_MOVE(UndoGroup)

private:
    UndoHistory &m_history;
};

} // namespace

TextEdits::TextEdits(EditableText &document, TextCursor &cursor, TextView &view, RowUpdates &updates,
    ViewScroller &scroller, ViewScrollBar &verticalBar, PrimarySelection &primary, TextAnnouncer &announcer,
    CursorFollowers &followers, CursorMoves &moves)
    : m_document(document)
    , m_store(document.store())
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_verticalBar(verticalBar)
    , m_primary(primary)
    , m_announcer(announcer)
    , m_followers(followers)
    , m_moves(moves)
{
    connect(&document, &EditableText::changed, this, &TextEdits::noteChange);
    connect(&document, &EditableText::aboutToReplace, this, &TextEdits::prepareForOther);
    connect(&document, &EditableText::grew, this, &TextEdits::showPart);
    connect(&document, &EditableText::replaced, this, &TextEdits::showOther);
}

void TextEdits::beginOperation()
{
    if (m_operations++ > 0)
        return;
    m_moves.setQuiet(true);
    m_damage = { std::nullopt, m_store.rowCount(), m_store.lineCount() };
    m_announcer.keep(m_store);
    m_primary.freeze();
    m_updates.updateSelection();
    m_updates.updateCursorRow();
}

void TextEdits::endOperation()
{
    if (--m_operations > 0)
        return;
    m_moves.setQuiet(false);
    const bool changed = m_damage.change.has_value();
    {
        const ViewScrollBar::OneChange longerAndMoved(m_verticalBar);
        if (changed)
            showDamage();
        m_updates.updateSelection();
        m_updates.updateCursorRow();
        m_scroller.showCursor();
    }
    m_followers.tell();
    if (changed)
        emit textChanged();
}

void TextEdits::noteChange(const TextChange &change)
{
    Q_ASSERT(m_operations > 0);
    m_damage.change = m_damage.change ? m_damage.change->then(change) : change;
}

void TextEdits::prepareForOther()
{
    m_announcer.keep(m_store);
    m_primary.freeze();
    m_cursor.set({});
    m_cursor.setGoalX(std::nullopt);
    m_showsParts = false;
}

/// The first one is shown from its start, the others are below it.
void TextEdits::showPart(const TextChange &part)
{
    if (!std::exchange(m_showsParts, true)) {
        showStart();
        m_followers.tell();
        return;
    }
    m_scroller.updateBars();
    m_updates.updateRows(m_store.rowColAt(part.offset).row, m_store.lastRow());
}

void TextEdits::showStart()
{
    m_view.setTop({});
    m_view.setLeft(0);
    m_scroller.updateBars();
    m_updates.updateAll();
}

/// A text that has come in parts is shown already; its user may have moved in it.
void TextEdits::showOther(const TextChange &change)
{
    if (!std::exchange(m_showsParts, false))
        showStart();
    m_announcer.announceChange(m_store, change);
    m_followers.tell();
    emit textChanged();
}

void TextEdits::showDamage()
{
    m_cursor.setGoalX(std::nullopt);
    m_scroller.updateBars();
    updateDamage();
    m_announcer.announceChange(m_store, *m_damage.change);
}

/// Rows above the first changed one stay, but for the one it continues, which may have room for more now.
/// Rows below the last changed line stay when neither their count nor that of the lines, which may be shown
/// beside them, has changed.
void TextEdits::updateDamage()
{
    const TextChange change = *m_damage.change;
    RowIndex first = m_store.rowColAt(change.offset).row;
    if (first > RowIndex() && !m_store.row(first - 1).endsLine)
        --first;
    RowIndex last = m_store.lastRow() + 1 + m_view.visibleRows();
    if (m_store.rowCount() == m_damage.rowsBefore && m_store.lineCount() == m_damage.linesBefore) {
        const LineIndex line = m_store.lineAt(change.offset + change.inserted);
        last = line < m_store.lastLine() ? rowOfLine(m_store, line + 1) - 1 : m_store.lastRow();
    }
    m_updates.updateRows(first, last);
}

void TextEdits::replace(TextRange range, QStringView text, Joining joining)
{
    Q_ASSERT(m_operations > 0);
    m_document.replace(range.start, range.length(), text, joining);
}

void TextEdits::insert(QStringView text, Joining joining)
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    const TextRange old = m_cursor.selection();
    replace(old, text, joining);
    m_cursor.set({ old.start + text.size() });
}

void TextEdits::insert(const TextPiece &text)
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    const TextRange old = m_cursor.selection();
    m_document.replace(old.start, old.length(), text);
    m_cursor.set({ old.start + text.length() });
}

/// End of the characters that `count` typed ones replace: no line end among them.
static Offset overwrittenEnd(const TextStore &store, Offset offset, qint64 count)
{
    while (count-- > 0 && offset < store.end() && store.at(offset) != u'\n')
        offset = nextCursorStop(store, offset);
    return offset;
}

void TextEdits::type(const QString &text)
{
    if (!m_document.requestChange())
        return;
    if (!m_cursor.overwrites() || m_cursor.hasSelection()) {
        insert(text, Joining::Typing);
        return;
    }
    const Operation operation(*this);
    const Offset from = m_cursor.place().offset;
    replace({ from, overwrittenEnd(m_store, from, text.toUcs4().size()) }, text, Joining::Typing);
    m_cursor.set({ from + text.size() });
}

void TextEdits::replaceRange(TextRange range, QStringView text)
{
    if (!m_document.requestChange())
        return;
    const auto kept = [&](CursorPlace place) {
        if (place.offset < range.start)
            return place;
        const qint64 shift = text.size() - range.length();
        return place.offset < range.end ? CursorPlace{ range.start } : CursorPlace{ place.offset + shift };
    };
    const Operation operation(*this);
    replace(range, text);
    m_cursor.set(kept(m_cursor.place()), kept(m_cursor.anchor()));
}

void TextEdits::replaceAround(qint64 start, qint64 replaced, QStringView text)
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    const UndoGroup oneStep(m_document.history());
    const TextRange old = m_cursor.selection();
    replace(old, {});
    const Offset from = qBound(Offset(), old.start + start, m_store.end());
    replace({ from, qMin(from + replaced, m_store.end()) }, text);
    m_cursor.set({ from + text.size() });
}

void TextEdits::drop(const TextPiece &text, Offset to, bool movesSelection)
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    const UndoGroup oneStep(m_document.history());
    if (movesSelection) {
        const TextRange from = m_cursor.selection();
        replace(from, {});
        if (to > from.start)
            to -= from.length();
    }
    m_document.replace(to, 0, text);
    m_cursor.set({ to + text.length() }, { to });
}

bool TextEdits::eraseSelection()
{
    if (!m_cursor.hasSelection())
        return false;
    insert({}, Joining::Never);
    return true;
}

void TextEdits::erase(Move move)
{
    if (!m_document.requestChange())
        return;
    if (eraseSelection())
        return;
    const Offset from = m_cursor.place().offset;
    const Offset to = m_cursor.target(move).offset;
    const Operation operation(*this);
    replace({ qMin(from, to), qMax(from, to) }, {}, isByCharacter(move) ? Joining::Erasing : Joining::Never);
    m_cursor.set({ qMin(from, to) });
}

void TextEdits::undo()
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    m_cursor.set({ m_document.undo() });
}

void TextEdits::redo()
{
    if (!m_document.requestChange())
        return;
    const Operation operation(*this);
    m_cursor.set({ m_document.redo() });
}
