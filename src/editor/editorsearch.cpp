#include "editor/editorsearch.h"

#include "document/textdocument.h"
#include "widget/qmultilineedit.h"

void EditorSearch::setPattern(const QString &text, Qt::CaseSensitivity caseSensitivity)
{
    if (!m_pattern.isFor(text, caseSensitivity))
        m_pattern = TextPattern(text, caseSensitivity);
}

std::optional<SearchHit> EditorSearch::next() const
{
    const TextStore &store = m_editor.store();
    const CursorPlace start =
        m_editor.hasMarkedText() ? nextColumn(store, m_editor.selectionBegin()) : m_editor.cursorPlace();
    return searchForward(store, m_pattern, start);
}

std::optional<SearchHit> EditorSearch::previous() const
{
    return searchBackward(m_editor.store(), m_pattern, m_editor.selectionBegin());
}

bool EditorSearch::selectNext()
{
    const auto hit = next();
    if (!hit)
        return false;
    m_editor.setCursorPlace(hit->begin);
    m_editor.extendSelection(hit->end);
    return true;
}

bool EditorSearch::selectPrevious()
{
    const auto hit = previous();
    if (!hit)
        return false;
    m_editor.setCursorPlace(hit->end);
    m_editor.extendSelection(hit->begin);
    return true;
}

bool EditorSearch::replaceNext(const QString &text)
{
    const auto hit = next();
    if (!hit)
        return false;
    const QMultiLineEdit::Batch batch(m_editor);
    replace(*hit, text);
    m_editor.setCursorPlace({ hit->begin.offset + text.size() });
    return true;
}

bool EditorSearch::replacePrevious(const QString &text)
{
    const auto hit = previous();
    if (!hit)
        return false;
    const QMultiLineEdit::Batch batch(m_editor);
    const RowCol begin = m_editor.store().rowColAt(hit->begin);
    replace(*hit, text);
    m_editor.setCursorPosition(begin);
    return true;
}

void EditorSearch::replace(const SearchHit &hit, const QString &text)
{
    m_editor.document().replace(hit.begin.offset, hit.end.offset - hit.begin.offset, text);
}
