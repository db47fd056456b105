#pragma once

#include "document/textdocument.h"
#include "editor/worksign.h"
#include "jobs/job.h"
#include "platform/freeturn.h"

#include <optional>

class JobRunner;
class NoticeQueue;
class ctlEditer;

/// One document on its way to its file, written behind the window.
///
/// The strip tells how far it is. The document is held until the end. Where a dialog or a run of replacements
/// is in the way of telling the end, that waits for them.
class SavingFile : public QObject {
    Q_OBJECT
public:
    /// Begins at once. Nothing is owned but the save; the document may be closed before this goes.
    SavingFile(
        ctlEditer &editor, std::unique_ptr<DocumentSave> save, NoticeQueue &notices, JobRunner &runner);
    /// A save that is not over leaves the file as it was.
    ~SavingFile() override;

    /// Waits for that without an event loop, no longer than this; ended() does not come then. True: all was
    /// in the file before that could be, and the document knows it.
    bool giveUp(QDeadlineTimer end);

signals:
    /// The last signal; this may be destroyed by whoever is told. The document is held no more, and knows
    /// what has become of it. Stopped: its user knows that the file is as it was.
    void ended(const SaveResult &result, JobOutcome outcome);

private:
    void note(const JobProgress &progress);
    void end();

    ctlEditer &m_editor;
    TextDocument &m_document;
    std::optional<WorkSign> m_sign; ///< until the end
    const DocumentSave *m_save; ///< owned by the job
    JobOutcome m_outcome = JobOutcome::Stopped;
    FreeTurn m_end{ [this] { end(); } };
    Job m_job;
};
