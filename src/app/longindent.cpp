#include "app/longindent.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "editor/indentwork.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"

#include <utility>

namespace {

/// A place by its line, counted from the line's end: so it stays on its text when the line gets another
/// beginning.
class PlaceFromLineEnd {
public:
    PlaceFromLineEnd(const TextStore &store, CursorPlace place)
        : m_line(store.lineAt(place.offset))
        , m_units(store.lineEnd(m_line) - place.offset)
    {
    }

    CursorPlace in(const TextStore &store) const
    {
        return { qMax(store.lineStart(m_line), store.lineEnd(m_line) - m_units) };
    }

private:
    LineIndex m_line;
    qint64 m_units;
};

} // namespace

LongIndent::LongIndent(
    ctlEditer &editor, TextRange lines, Indentation direction, DocumentArea &documents, JobRunner &runner)
    : m_editor(editor)
    , m_document(editor.document())
    , m_lines(lines)
    , m_direction(direction)
    , m_documents(documents)
    , m_runner(runner)
    , m_anchor(editor.anchorPlace())
    , m_cursor(editor.cursorPlace())
{
    m_sign.emplace(documents.notices(), m_editor, WorkNotice::Work::Indenting, [this] { stop(); });
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    m_document.setHeld(true);
    begin();
}

LongIndent::~LongIndent() = default;

void LongIndent::begin()
{
    auto work = std::make_unique<IndentWork>(std::as_const(m_document).store(), m_lines, m_direction);
    m_work = work.get();
    m_job.emplace(std::move(work), m_runner);
    connect(&*m_job, &Job::progressed, this, &LongIndent::note);
    connect(&*m_job, &Job::finished, this, &LongIndent::finish);
}

void LongIndent::note(const JobProgress &progress)
{
    m_sign->setProgress(int(progress.done * 100 / progress.total));
}

void LongIndent::finish(JobOutcome outcome)
{
    m_outcome = outcome;
    takeOver();
}

/// Rows may have become others meanwhile, by another font for instance: then the lines are made once more,
/// because measuring them is for other threads too.
void LongIndent::takeOver()
{
    if (QPEApplication::isBusy()) {
        m_end.await();
    } else if (m_outcome != JobOutcome::Done) {
        fail();
    } else if (!m_work->isLaidOutAs(std::as_const(m_document).store())) {
        begin();
    } else {
        m_document.setHeld(false);
        put();
        end();
    }
}

/// The block is selected, as after each of its kind, unless its user has turned to other text.
void LongIndent::put()
{
    const TextStore &store = m_editor.store();
    const bool isElsewhere = m_editor.anchorPlace() != m_anchor || m_editor.cursorPlace() != m_cursor;
    std::optional<QMultiLineEdit::Batch> oneMove;
    if (isElsewhere)
        oneMove.emplace(m_editor);
    const PlaceFromLineEnd anchor(store, m_editor.anchorPlace());
    const PlaceFromLineEnd cursor(store, m_editor.cursorPlace());
    m_editor.takeBlock(m_lines, m_work->take());
    if (isElsewhere)
        m_editor.select(anchor.in(store), cursor.in(store));
}

void LongIndent::stop()
{
    m_job->stop();
    end();
}

/// Whoever is told of the end may destroy this.
void LongIndent::fail()
{
    ctlEditer &editor = m_editor;
    m_documents.setCurrent(&editor);
    end();
    MessageBox::critical(
        &editor, ctlEditer::tr("Error"), tr("There is not enough memory to move these lines!"));
}

/// Whoever is told may destroy this.
void LongIndent::end()
{
    m_job->disconnect(this);
    m_document.disconnect(this);
    m_end.cancel();
    m_sign.reset();
    m_document.setHeld(false);
    emit ended();
}
