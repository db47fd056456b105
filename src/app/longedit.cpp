#include "app/longedit.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "editor/partwisework.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"
#include "platform/turnlength.h"

#include <utility>

LongEdit::LongEdit(ctlEditer &editor, Task task, DocumentArea &documents, JobRunner &runner)
    : m_editor(editor)
    , m_document(editor.document())
    , m_task(std::move(task))
    , m_documents(documents)
    , m_runner(runner)
    , m_asking(
          this, longestTurn, [this](QDeadlineTimer end) { return askForWidths(end); }, [this] { begin(); },
          [this] { fail(); })
{
    m_sign.emplace(documents.notices(), &m_editor, m_task.work, [this] { stop(); });
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    connect(&m_document, &TextDocument::awaited, this, [this](auto what) { m_sign->promise(what); });
    m_document.setHeld(true);
    begin();
}

LongEdit::~LongEdit() = default;

void LongEdit::begin()
{
    auto work = std::make_unique<PartwiseWork>(m_task.text());
    m_work = work.get();
    m_job.emplace(std::move(work), m_runner);
    connect(&*m_job, &Job::progressed, this, &LongEdit::note);
    connect(&*m_job, &Job::finished, this, &LongEdit::finish);
}

void LongEdit::note(const JobProgress &progress)
{
    m_sign->setProgress(int(progress.done * 100 / progress.total));
}

void LongEdit::finish(JobOutcome outcome)
{
    m_outcome = outcome;
    takeOver();
}

/// The rows may have become others meanwhile, by another font for instance, or the text has characters that
/// were never met: then it is made once more, because measuring it is for other threads too.
void LongEdit::takeOver()
{
    if (QPEApplication::isBusy()) {
        m_end.await();
    } else if (m_outcome != JobOutcome::Done) {
        fail();
    } else if (!m_work->text().isLaidOutAs(std::as_const(m_document).store())) {
        m_asking.goOn();
    } else {
        m_document.setHeld(false);
        m_task.put(m_work->text().take());
        end(true);
    }
}

/// A font takes a twentieth of a second for some thousand widths.
bool LongEdit::askForWidths(QDeadlineTimer end)
{
    return m_work->text().askForWidths(std::as_const(m_document).store(), end);
}

void LongEdit::stop()
{
    m_job->stop();
    end(false);
}

/// Whoever is told of the end may destroy this.
void LongEdit::fail()
{
    ctlEditer &editor = m_editor;
    m_documents.setCurrent(&editor);
    end(false);
    MessageBox::critical(&editor, ctlEditer::tr("Error"), tr("There is not enough memory for this edit!"));
}

void LongEdit::end(bool isMade)
{
    m_job->disconnect(this);
    m_document.disconnect(this);
    m_end.cancel();
    m_asking.stop();
    m_sign.reset();
    m_document.setHeld(false);
    emit ended(isMade);
}
