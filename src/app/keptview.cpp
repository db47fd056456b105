#include "app/keptview.h"

#include "app/arrivingfile.h"

KeptView::KeptView(const ctlEditer &editor)
    : m_cursor(editor.cursorPosition())
    , m_top(editor.topRow())
    , m_isAtEnd(!editor.hasMarkedText() && editor.cursorOffset() == editor.store().end())
{
}

void KeptView::show(ctlEditer &editor, CursorAtEnd atEnd) const
{
    editor.setCursorPosition(m_cursor);
    editor.setTopRow(m_top);
    if (m_isAtEnd && atEnd == CursorAtEnd::Follows)
        editor.setCursorPlace({ editor.store().end() });
}

void KeptView::renewBeforeReplacing(
    const std::shared_ptr<KeptView> &view, const ctlEditer &editor, const ArrivingFile &arriving)
{
    QObject::connect(
        &arriving, &ArrivingFile::aboutToReplace, &arriving, [view, &editor] { *view = KeptView(editor); });
}
