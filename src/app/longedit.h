#pragma once

#include "editor/partwisetext.h"
#include "editor/worksign.h"
#include "jobs/job.h"
#include "jobs/workturns.h"
#include "platform/freeturn.h"

#include <QObject>

#include <functional>
#include <optional>

class DocumentArea;
class JobRunner;
class PartwiseWork;
class TextDocument;
class ctlEditer;

/// One edit of a document that takes too long to be made in one go. The text that it brings is made behind
/// the window, and put into the document at once.
///
/// The document is held until then, and the strip tells how far it is. Where a dialog or a run of
/// replacements is in the way of the edit, that waits for them.
class LongEdit : public QObject {
    Q_OBJECT
public:
    struct Task {
        WorkNotice::Work work;
        /// The text that is to be made, for the document as it is laid out now. Asked again where that is
        /// another one at the end.
        std::function<PartwiseText()> text;
        /// Edits the document, which is held no more.
        std::function<void(const TextPiece &made)> put;
    };
    /// Begins at once. Nothing is owned; the document may be closed before this goes.
    LongEdit(ctlEditer &editor, Task task, DocumentArea &documents, JobRunner &runner);
    ~LongEdit() override;

    /// The text stays as it was; ended() comes at once.
    void stop();

signals:
    /// The last signal; this may be destroyed by whoever is told. The document is held no more. Not made: its
    /// text is as it was.
    void ended(bool isMade);

private:
    void begin();
    void note(const JobProgress &progress);
    void finish(JobOutcome outcome);
    void takeOver();
    bool askForWidths(QDeadlineTimer end);
    void fail();
    void end(bool isMade);

    ctlEditer &m_editor;
    TextDocument &m_document;
    const Task m_task;
    DocumentArea &m_documents;
    JobRunner &m_runner;
    std::optional<WorkSign> m_sign; ///< until the end
    JobOutcome m_outcome = JobOutcome::Stopped;
    WorkTurns m_asking; ///< while the font is asked for widths
    FreeTurn m_end{ [this] { takeOver(); } };
    PartwiseWork *m_work = nullptr; ///< owned by the job
    std::optional<Job> m_job;
};
