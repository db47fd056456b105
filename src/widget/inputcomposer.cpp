#include "widget/inputcomposer.h"

#include "document/editabletext.h"
#include "text/enteredtext.h"
#include "widget/cursorfollowers.h"
#include "widget/cursormoves.h"
#include "widget/preedit.h"
#include "widget/rowupdates.h"
#include "widget/textedits.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QScopedValueRollback>
#include <QWidget>

/// Units before and behind the cursor that input methods see; and of selected text.
static constexpr qint64 shownUnits = 1024;
static constexpr qint64 shownSelection = qint64(64) << 10;

InputComposer::InputComposer(QWidget &editor, EditableText &document, TextCursor &cursor, Preedit &preedit,
    const TextView &view, RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers,
    CursorMoves &moves, TextEdits &edits)
    : m_editor(editor)
    , m_document(document)
    , m_store(document.store())
    , m_cursor(cursor)
    , m_preedit(preedit)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_followers(followers)
    , m_moves(moves)
    , m_edits(edits)
{
}

bool InputComposer::isComposing() const
{
    return !m_preedit.text.isEmpty();
}

bool InputComposer::compose(const QInputMethodEvent &event)
{
    if (m_isDeaf)
        return false;
    if (!event.commitString().isEmpty() || event.replacementLength() > 0)
        commit(event);
    setPreedit(event);
    for (const QInputMethodEvent::Attribute &attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Selection)
            select(attribute);
    }
    return true;
}

void InputComposer::commit()
{
    if (!isComposing())
        return;
    QGuiApplication::inputMethod()->commit();
    if (!isComposing())
        return;
    // There are input methods that do not know this request, and they may have gone meanwhile. What was shown
    // is kept, and the input method is to forget it; some then commit it themselves.
    QInputMethodEvent event;
    event.setCommitString(m_preedit.text);
    QCoreApplication::sendEvent(&m_editor, &event);
    const QScopedValueRollback deaf(m_isDeaf, true);
    QGuiApplication::inputMethod()->reset();
}

/// What is composed goes away first, so that the text it becomes is not shown twice. It is a step of its own;
/// characters that come one by one, without being composed, are typing like any other.
void InputComposer::commit(const QInputMethodEvent &event)
{
    if (isComposing())
        m_document.history().breakJoining();
    m_preedit = {};
    const QString text = typedText(event.commitString());
    if (event.replacementLength() > 0)
        m_edits.replaceAround(event.replacementStart(), event.replacementLength(), text);
    else if (!text.isEmpty())
        m_edits.type(text);
}

void InputComposer::setPreedit(const QInputMethodEvent &event)
{
    const bool changes = isComposing() || !event.preeditString().isEmpty();
    m_preedit = {};
    m_preedit.text = event.preeditString();
    m_preedit.cursor = int(m_preedit.text.size());
    for (const QInputMethodEvent::Attribute &attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::TextFormat)
            m_preedit.formats.append(attribute);
        if (attribute.type != QInputMethodEvent::Cursor)
            continue;
        m_preedit.cursor = qBound(0, attribute.start, int(m_preedit.text.size()));
        m_preedit.cursorVisible = attribute.length != 0;
    }
    if (!changes)
        return;
    m_scroller.updateBars();
    m_updates.updateCursorRow();
    m_scroller.showCursor();
    m_followers.tell();
}

/// `attribute` counts in the text around the cursor that the input method was shown.
void InputComposer::select(const QInputMethodEvent::Attribute &attribute)
{
    const TextRange shown = surroundings();
    const auto inside = [&shown](qint64 place) {
        return CursorPlace{ shown.start + qBound<qint64>(0, place, shown.length()) };
    };
    m_moves.select(inside(attribute.start), inside(qint64(attribute.start) + attribute.length));
}

/// The text around the cursor that is shown to input methods: a part of its line.
TextRange InputComposer::surroundings() const
{
    const Offset cursor = m_cursor.place().offset;
    const LineIndex line = m_store.lineAt(cursor);
    TextRange range = { qMax(m_store.lineStart(line), cursor - shownUnits),
        qMin(m_store.lineEnd(line), cursor + shownUnits) };
    if (!range.isEmpty() && QChar::isLowSurrogate(m_store.at(range.start)))
        ++range.start;
    if (!range.isEmpty() && QChar::isHighSurrogate(m_store.at(range.end - 1)))
        --range.end;
    return range;
}

QVariant InputComposer::answer(Qt::InputMethodQuery query, const QVariant &argument) const
{
    switch (query) {
    case Qt::ImEnabled:
        return m_editor.isEnabled();
    case Qt::ImReadOnly:
        return false;
    case Qt::ImHints:
        return int(m_editor.inputMethodHints() | Qt::ImhMultiLine);
    case Qt::ImCursorRectangle:
        return m_view.cursorBox();
    case Qt::ImAnchorRectangle: {
        const RowCol anchor = m_store.rowColAt(m_cursor.anchor());
        return m_view.cursorBoxAt(anchor.row, m_view.xOf(anchor));
    }
    case Qt::ImInputItemClipRectangle:
        return QRectF(0, 0, m_view.width(), m_view.height());
    case Qt::ImFont:
        return m_editor.font();
    case Qt::ImAbsolutePosition:
        return m_cursor.place().offset.value();
    case Qt::ImCurrentSelection: {
        const TextRange selected = m_cursor.selection();
        return m_store.text(selected.start, qMin(selected.length(), shownSelection));
    }
    default:
        return answerAround(query, argument);
    }
}

/// Positions and text in the surroundings.
QVariant InputComposer::answerAround(Qt::InputMethodQuery query, const QVariant &argument) const
{
    const TextRange shown = surroundings();
    const Offset cursor = m_cursor.place().offset;
    const auto inShown = [&shown](Offset offset) {
        return int(qBound(shown.start, offset, shown.end) - shown.start);
    };
    const auto upTo = [&argument](qint64 most) {
        return argument.isValid() ? qBound<qint64>(0, qint64(argument.toInt()), most) : most;
    };
    switch (query) {
    case Qt::ImCursorPosition:
        return inShown(argument.isValid() ? m_view.placeAt(argument.toPointF()).offset : cursor);
    case Qt::ImAnchorPosition:
        return inShown(m_cursor.anchor().offset);
    case Qt::ImSurroundingText:
        return m_store.text(shown);
    case Qt::ImTextBeforeCursor: {
        const qint64 length = upTo(cursor - shown.start);
        return m_store.text(cursor - length, length);
    }
    case Qt::ImTextAfterCursor:
        return m_store.text(cursor, upTo(shown.end - cursor));
    default:
        return {};
    }
}
