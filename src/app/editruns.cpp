#include "app/editruns.h"

#include "app/documentarea.h"
#include "app/longedit.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "editor/pasting.h"
#include "widget/textexchange.h"

#include <functional>
#include <utility>

namespace {

/// Cursor and selection of a document whose user may turn to other text while an edit of it is made. Then
/// they stay on that, and the next key does nothing to what was edited.
class TurnedTo {
public:
    explicit TurnedTo(const ctlEditer &editor)
        : m_anchor(editor.anchorPlace())
        , m_cursor(editor.cursorPlace())
    {
    }

    /// Edits by `make`, which leaves the cursor where it is without that; `follow` tells where a place of
    /// before is then.
    template <typename Follow>
    void edit(ctlEditer &editor, const std::function<void()> &make, const Follow &follow) const
    {
        const TurnedTo now(editor);
        if (now.m_anchor == m_anchor && now.m_cursor == m_cursor)
            return make();
        const QMultiLineEdit::Batch oneMove(editor);
        const auto anchor = follow(now.m_anchor);
        const auto cursor = follow(now.m_cursor);
        make();
        editor.select(anchor(), cursor());
    }

private:
    CursorPlace m_anchor;
    CursorPlace m_cursor;
};

/// A place stays as far from the end of its line, which gets another beginning.
auto followInLine(const ctlEditer &editor)
{
    return [&store = editor.store()](CursorPlace place) {
        const LineIndex line = store.lineAt(place.offset);
        return [&store, line, units = store.lineEnd(line) - place.offset]() -> CursorPlace {
            return { qMax(store.lineStart(line), store.lineEnd(line) - units) };
        };
    };
}

/// A place in what is replaced comes to the end of what takes its place.
auto followReplaced(TextRange range, qint64 inserted)
{
    return [range, inserted](CursorPlace place) {
        const qint64 shift = inserted - range.length();
        const bool isBefore = place.offset < range.start;
        return [place, shift, isBefore, end = range.end]() -> CursorPlace {
            return isBefore ? place : CursorPlace{ qMax(place.offset, end) + shift };
        };
    };
}

} // namespace

EditRuns::EditRuns(DocumentArea &documents, const WindowJobs &jobs)
    : m_documents(documents)
    , m_jobs(jobs)
{
    connect(&documents, &DocumentArea::added, this, [this](ctlEditer *editor) {
        editor->setBlockIndenter([this, editor](TextRange lines, Indentation direction) {
            return indent(*editor, lines, direction);
        });
        editor->setLongInserter(
            [this, editor](const BroughtText &brought) { return paste(*editor, brought); });
    });
    connect(&documents, &DocumentArea::closed, this, [this](const ctlEditer *editor) {
        const auto closed = m_underWay.extract(editor);
        for (const Then &then : closed ? closed.mapped().then : std::vector<Then>())
            then(false);
    });
}

EditRuns::~EditRuns() = default;

bool EditRuns::indent(ctlEditer &editor, TextRange lines, Indentation direction)
{
    if (lines.length() < m_jobs.fewest)
        return false;
    const auto text = [&editor, lines, direction] {
        return indenting(std::as_const(editor).document().store(), lines, direction);
    };
    const auto put = [&editor, lines, before = TurnedTo(editor)](const TextPiece &block) {
        before.edit(
            editor, [&] { editor.takeBlock(lines, block); }, followInLine(editor));
    };
    begin(editor,
        std::make_unique<LongEdit>(
            editor, LongEdit::Task{ WorkNotice::Work::Indenting, text, put }, m_documents, *m_jobs.runner));
    return true;
}

/// What this document has measured already costs nothing.
bool EditRuns::paste(ctlEditer &editor, const BroughtText &brought)
{
    const TextStore &store = std::as_const(editor).document().store();
    const bool isThere =
        brought.from == BroughtText::From::Document && brought.piece.isMeasuredBy(store.layout());
    if (brought.length() < m_jobs.fewest || isThere)
        return false;
    if (!editor.document().requestChange())
        return true;
    const auto text = [&editor, brought] {
        return pasting(std::as_const(editor).document().store(), brought);
    };
    const bool isDropped = brought.droppedAt.has_value();
    const TextRange replaced = isDropped
        ? TextRange{ *brought.droppedAt, *brought.droppedAt }
        : TextRange{ editor.selectionBegin().offset, editor.selectionEnd().offset };
    const auto put = [&editor, replaced, isDropped, before = TurnedTo(editor)](const TextPiece &made) {
        const auto insert = [&] {
            editor.select({ replaced.start }, { replaced.end });
            editor.insert(made);
            if (isDropped)
                editor.select({ replaced.start }, editor.cursorPlace());
        };
        before.edit(editor, insert, followReplaced(replaced, made.length()));
    };
    begin(editor,
        std::make_unique<LongEdit>(
            editor, LongEdit::Task{ WorkNotice::Work::Pasting, text, put }, m_documents, *m_jobs.runner));
    return true;
}

void EditRuns::begin(ctlEditer &editor, std::unique_ptr<LongEdit> edit)
{
    connect(edit.get(), &LongEdit::ended, this, [this, &editor](bool isMade) { end(editor, isMade); });
    m_underWay[&editor].edit = std::move(edit);
}

/// It is still telling of its end. What can be undone may be told of a document that is not shown.
void EditRuns::end(ctlEditer &editor, bool isMade)
{
    UnderWay over = std::move(m_underWay.extract(&editor).mapped());
    over.edit.release()->deleteLater();
    emit m_documents.workEnded();
    for (const Then &then : over.then)
        then(isMade);
}

void EditRuns::whenEnded(const ctlEditer *editor, const Then &then)
{
    m_underWay.at(editor).then.push_back(then);
}

void EditRuns::stop(const ctlEditer *editor)
{
    if (const auto found = m_underWay.find(editor); found != m_underWay.end())
        found->second.edit->stop();
}
