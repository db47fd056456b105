#include "app/partialreplacements.h"

#include "app/hitview.h"
#include "editor/ctlediter.h"
#include "editor/noticequeue.h"

PartialReplacements &PartialReplacements::of(ctlEditer &editor, NoticeQueue &notices)
{
    for (QObject *const child : editor.children()) {
        if (auto *const found = dynamic_cast<PartialReplacements *>(child))
            return *found;
    }
    return *new PartialReplacements(editor, notices);
}

PartialReplacements::PartialReplacements(ctlEditer &editor, NoticeQueue &notices)
    : QObject(&editor)
    , m_editor(editor)
    , m_notices(notices)
{
    connect(&editor.document(), &TextDocument::changed, this, &PartialReplacements::follow);
    connect(&editor.document(), &TextDocument::replaced, this, &PartialReplacements::forget);
}

void PartialReplacements::begin(qint64 hitLength, qint64 textLength)
{
    forget();
    m_hitLength = hitLength;
    m_textLength = textLength;
    const TextStore &store = m_editor.document().store();
    m_places = PlacesInText(store.length());
    m_before = store.piece({}, store.length());
    m_replacements = 0;
    m_isRunning = true;
}

void PartialReplacements::end()
{
    m_isRunning = false;
    m_canUndoAll = true;
    if (m_places.count() > 0)
        tell();
    else
        forget();
}

void PartialReplacements::follow(const TextChange &change)
{
    const qint64 before = m_places.count();
    if (!m_isRunning && m_textLength == 0)
        m_places.drop(change.offset, change.offset + 1); // what was there comes back, or other text
    m_places.follow(change);
    if (m_isRunning)
        noteReplacement(change);
    else if (before > 0)
        noteEdit(before);
}

void PartialReplacements::noteReplacement(const TextChange &change)
{
    ++m_replacements;
    if (change.removed < m_hitLength)
        m_places.add(change.offset);
}

void PartialReplacements::noteEdit(qint64 placesBefore)
{
    if (m_places.count() == 0) {
        forget();
    } else if (std::exchange(m_canUndoAll, false) || m_places.count() != placesBefore) {
        m_before = {};
        tell();
    }
}

void PartialReplacements::forget()
{
    m_places = PlacesInText(m_editor.document().store().length());
    m_before = {};
    m_canUndoAll = false;
    m_notices.withdraw(NoticeKind::ReplacedInPart, &m_editor);
}

void PartialReplacements::tell()
{
    const auto text = [this] { return tr("Replaced in part only: %1").arg(m_places.count()); };
    Notice notice{ NoticeKind::ReplacedInPart, &m_editor, text, {} };
    notice.offers.push_back({ [] { return tr("Go to it"); }, [this] { goToNext(); } });
    if (m_canUndoAll)
        notice.offers.push_back({ [] { return tr("Undo all"); }, [this] { undoAll(); } });
    notice.dismissed = [this] { forget(); };
    m_notices.put(std::move(notice));
}

/// The next one behind the selection, round at the end.
void PartialReplacements::goToNext()
{
    const Offset behind = qMax(m_editor.cursorOffset(), m_editor.anchorOffset());
    const qint64 index = m_places.indexBehind(behind);
    const Offset at = m_places.at(index < m_places.count() ? index : 0);
    m_editor.select({ at }, { qMin(at + m_textLength, m_editor.store().end()) });
    showHit(m_editor);
    m_editor.setFocus();
}

/// Step by step, unless the steps of the run may have become one with edits before it.
void PartialReplacements::undoAll()
{
    if (!m_editor.document().requestChange())
        return;
    const QMultiLineEdit::Batch batch(m_editor);
    const TextPiece before = m_before;
    const bool areApart = m_replacements < m_editor.undoDepth();
    forget();
    if (areApart) {
        for (qint64 i = 0; i < m_replacements; ++i)
            m_editor.undo();
    } else {
        m_editor.document().replace({}, m_editor.store().length(), before);
        m_editor.setCursorPosition(0, 0);
    }
    m_editor.setFocus();
}
