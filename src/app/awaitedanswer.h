#pragma once

#include "editor/worksign.h"
#include "jobs/job.h"
#include "platform/freeturn.h"

class DocumentArea;
class JobRunner;
class ctlEditer;

/// What was asked of a document's text, and is worked out behind the window: in a snapshot, while the text
/// can be edited. The strip tells how far it is.
///
/// The answer is of the text as it is, to who asked for it: once the text is edited or read again, or
/// somebody has gone on to something else, there is none any more.
class AwaitedAnswer : public QObject {
    Q_OBJECT
public:
    /// Whether the answer would still be of use; asked now and then.
    using IsWanted = std::function<bool()>;

    /// Begins at once. Nothing is owned but the work.
    AwaitedAnswer(
        ctlEditer &editor, DocumentArea &documents, std::unique_ptr<JobWork> work, WorkNotice::Work kind,
        JobRunner &runner, IsWanted isWanted = [] { return true; });

    /// Nobody wants the answer any more.
    void giveUp() { end(false); }
    /// Another question was asked, and has to wait.
    void refuse() { m_sign->refuse(); }

signals:
    /// The last signal, when no dialog and no run of replacements is in the way. It may come while the
    /// document is being closed. Where there was too little memory for an answer, a box says so then.
    void ended(bool isAnswered);

private:
    void note(const JobProgress &progress);
    void noteEnd(JobOutcome outcome);
    void answer();
    void end(bool isAnswered);

    DocumentArea &m_documents;
    const IsWanted m_isWanted;
    std::optional<WorkSign> m_sign; ///< until the end
    FreeTurn m_answer{ [this] { answer(); } };
    bool m_hasFailed = false;
    Job m_job;
};
