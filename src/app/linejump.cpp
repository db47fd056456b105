#include "app/linejump.h"

#include "app/documentarea.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "search/frmjumpto.h"

#include <utility>

LineJump::LineJump(QWidget &window, DocumentArea &documents, RecentPlaces &places)
    : m_window(window)
    , m_documents(documents)
    , m_places(places)
{
}

void LineJump::ask()
{
    ctlEditer *const editor = m_documents.current();
    if (!editor)
        return;
    frmJumpTo dialog(&m_window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QObject::disconnect(m_awaited);
    if (dialog.lineNo > editor->store().lineCount() && std::as_const(*editor).document().isHeld())
        jumpWhenItHasCome(*editor, dialog.lineNo);
    else
        editor->jumpToLine(dialog.lineNo);
}

/// Where its cursor was the last time is not wanted any more.
void LineJump::jumpWhenItHasCome(ctlEditer &editor, qint64 line)
{
    m_places.dropCarried(editor);
    const auto jump = [&editor, line, cursor = editor.cursorOffset()] {
        if (editor.cursorOffset() == cursor)
            editor.jumpToLine(line);
    };
    m_awaited = QObject::connect(&editor.document(), &TextDocument::released, &editor, jump,
        Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}
