#include "app/linejump.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "platform/filerequest.h"
#include "search/frmjumpto.h"

#include <utility>

LineJump::LineJump(
    QWidget &window, DocumentArea &documents, const DocumentLoader &loader, RecentPlaces &places)
    : m_window(window)
    , m_documents(documents)
    , m_loader(loader)
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
    forget(*editor);
    const qint64 line = dialog.lineNo;
    const auto jump = [editor, line] { editor->jumpToLine(line); };
    if (line > editor->store().lineCount() && std::as_const(*editor).document().isHeld())
        jumpUnlessMoved(*editor, jump);
    else
        jump();
}

/// In a text that takes the place of this one the cursor is set anew, which says nothing of its user.
void LineJump::go(ctlEditer &editor, const LineColumn &place)
{
    forget(editor);
    const auto jump = [&editor, place] { editor.jumpTo(place.line, place.column); };
    if (!std::as_const(editor).document().isHeld())
        jump();
    else if (m_loader.isReplacing(&editor))
        jumpWhenReleased(editor, jump);
    else
        jumpUnlessMoved(editor, jump);
}

/// Where its cursor was the last time is not wanted any more.
void LineJump::jumpUnlessMoved(ctlEditer &editor, const Jump &jump)
{
    m_places.dropCarried(editor);
    jumpWhenReleased(editor, [&editor, jump, cursor = editor.cursorOffset()] {
        if (editor.cursorOffset() == cursor)
            jump();
    });
}

/// What has come from a pipe may be read once more.
void LineJump::jumpWhenReleased(ctlEditer &editor, const Jump &jump)
{
    const auto jumpUnlessHeldAgain = [this, &editor, jump] {
        if (std::as_const(editor).document().isHeld())
            jumpWhenReleased(editor, jump);
        else
            jump();
    };
    m_awaited[&editor] = QObject::connect(&editor.document(), &TextDocument::released, &editor,
        jumpUnlessHeldAgain, Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void LineJump::forget(const ctlEditer &editor)
{
    QObject::disconnect(m_awaited.take(&editor));
}
