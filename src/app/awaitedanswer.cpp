#include "app/awaitedanswer.h"

#include "app/documentarea.h"
#include "document/textdocument.h"
#include "editor/ctlediter.h"
#include "editor/memorybox.h"

AwaitedAnswer::AwaitedAnswer(ctlEditer &editor, DocumentArea &documents, std::unique_ptr<JobWork> work,
    WorkNotice::Work kind, JobRunner &runner, IsWanted isWanted)
    : m_documents(documents)
    , m_isWanted(std::move(isWanted))
    , m_sign(std::in_place, documents.notices(), &editor, kind, [this] { giveUp(); })
    , m_job(std::move(work), runner)
{
    connect(&editor.document(), &TextDocument::changed, this, &AwaitedAnswer::giveUp);
    connect(&editor.document(), &TextDocument::aboutToReplace, this, &AwaitedAnswer::giveUp);
    connect(&documents, &DocumentArea::closed, this, [this, &editor](const ctlEditer *closed) {
        if (closed == &editor)
            giveUp();
    });
    connect(&m_job, &Job::progressed, this, &AwaitedAnswer::note);
    connect(&m_job, &Job::finished, this, &AwaitedAnswer::noteEnd);
}

void AwaitedAnswer::note(const JobProgress &progress)
{
    if (!m_isWanted())
        giveUp();
    else
        m_sign->setProgress(int(progress.done * 100 / progress.total));
}

void AwaitedAnswer::noteEnd(JobOutcome outcome)
{
    m_hasFailed = outcome == JobOutcome::Failed;
    answer();
}

/// What is being composed belongs to the text, which is another one then.
void AwaitedAnswer::answer()
{
    if (!m_documents.beginCommand()) {
        m_answer.await();
        return;
    }
    if (!m_sign)
        return;
    const bool isWanted = m_isWanted();
    const bool isFailureToTell = isWanted && m_hasFailed;
    DocumentArea &documents = m_documents;
    end(isWanted && !m_hasFailed); // who is told may destroy this
    if (isFailureToTell)
        tellTooLittleMemory(&documents);
}

void AwaitedAnswer::end(bool isAnswered)
{
    if (!m_sign)
        return;
    m_job.disconnect(this);
    m_answer.cancel();
    m_job.stop();
    m_sign.reset();
    emit ended(isAnswered);
}
