#include "editor/editorsearch.h"

#include "document/textdocument.h"
#include "widget/qmultilineedit.h"

void EditorSearch::setPattern(const QString &text, Qt::CaseSensitivity caseSensitivity)
{
    if (!m_pattern.isFor(text, caseSensitivity))
        m_pattern = TextPattern(text, caseSensitivity);
}

CursorPlace EditorSearch::start(SearchDirection direction) const
{
    if (direction == SearchDirection::Backward)
        return m_editor.selectionBegin();
    return m_editor.hasMarkedText() ? nextColumn(m_editor.store(), m_editor.selectionBegin())
                                    : m_editor.cursorPlace();
}

std::optional<SearchHit> EditorSearch::find(SearchDirection direction) const
{
    return findHit(m_editor.store(), m_pattern, direction, start(direction));
}

bool EditorSearch::selectHit(SearchDirection direction)
{
    const auto hit = find(direction);
    if (hit)
        select(direction, *hit);
    return hit.has_value();
}

bool EditorSearch::replaceHit(SearchDirection direction, const QString &text)
{
    const auto hit = find(direction);
    if (hit)
        replace(direction, *hit, text);
    return hit.has_value();
}

void EditorSearch::select(SearchDirection direction, const SearchHit &hit)
{
    const bool isForward = direction == SearchDirection::Forward;
    m_editor.setCursorPlace(isForward ? hit.begin : hit.end);
    m_editor.extendSelection(isForward ? hit.end : hit.begin);
}

void EditorSearch::replace(SearchDirection direction, const SearchHit &hit, const QString &text)
{
    const QMultiLineEdit::Batch batch(m_editor);
    const RowCol begin =
        direction == SearchDirection::Backward ? m_editor.store().rowColAt(hit.begin) : RowCol();
    m_editor.document().replace(hit.begin.offset, hit.end.offset - hit.begin.offset, text);
    if (direction == SearchDirection::Forward)
        m_editor.setCursorPlace({ hit.begin.offset + text.size() });
    else
        m_editor.setCursorPosition(begin);
}
