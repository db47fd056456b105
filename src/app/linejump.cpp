#include "app/linejump.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "platform/filerequest.h"
#include "search/frmjumpto.h"

#include <limits>
#include <utility>

namespace {

constexpr qint64 lastThereIs = std::numeric_limits<qint64>::max();

} // namespace

LineJump::LineJump(
    QWidget &window, DocumentArea &documents, const DocumentLoader &loader, RecentPlaces &places)
    : m_window(window)
    , m_documents(documents)
    , m_loader(loader)
    , m_places(places)
{
    QObject::connect(&documents, &DocumentArea::added, &documents, [this](ctlEditer *editor) {
        QObject::connect(
            &editor->document(), &TextDocument::endSought, editor, [=, this] { seekEnd(*editor); });
    });
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

/// The end of a text that another one will take the place of is its end.
void LineJump::seekEnd(ctlEditer &editor)
{
    forget(editor);
    if (!m_loader.isReplacing(&editor))
        jumpUnlessMoved(editor, [&editor] { editor.jumpTo(lastThereIs, lastThereIs); });
}

/// Where its cursor was the last time is not wanted any more. A text that starts over, in another code, moves
/// the cursor too.
void LineJump::jumpUnlessMoved(ctlEditer &editor, const Jump &jump)
{
    m_places.dropCarried(editor);
    jumpWhenReleased(editor, [this, &editor, jump] {
        if (editor.cursorOffset() == m_awaited.value(&editor).cursor)
            jump();
        forget(editor);
    });
    Awaited &awaited = m_awaited[&editor];
    awaited.cursor = editor.cursorOffset();
    awaited.startedOver = QObject::connect(&editor.document(), &TextDocument::aboutToReplace, &editor,
        [this, &editor] { m_awaited[&editor].cursor = {}; });
}

/// What has come from a pipe may be read once more.
void LineJump::jumpWhenReleased(ctlEditer &editor, const Jump &jump)
{
    TextDocument &document = editor.document();
    const auto jumpUnlessHeldAgain = [this, &editor, jump] {
        if (std::as_const(editor).document().isHeld())
            jumpWhenReleased(editor, jump);
        else
            jump();
    };
    m_awaited[&editor].released = QObject::connect(&document, &TextDocument::released, &editor,
        jumpUnlessHeldAgain, Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    document.await(EditableText::Awaited::Jump);
}

void LineJump::forget(const ctlEditer &editor)
{
    const Awaited awaited = m_awaited.take(&editor);
    QObject::disconnect(awaited.released);
    QObject::disconnect(awaited.startedOver);
}
