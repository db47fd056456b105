#pragma once

#include "editor/worksign.h"
#include "files/sharedfd.h"
#include "jobs/job.h"

#include <optional>

class InputWork;
class JobRunner;
class NoticeQueue;
class ctlEditer;

/// What other programs write into a pipe for a document, read behind the window: nobody knows when it ends.
///
/// The document is held; the strip says so, and its "Stop" waits for no more: what has come is all then.
class ArrivingInput : public QObject {
    Q_OBJECT
public:
    /// Begins at once. Nothing but the input is owned; the document may be closed before this goes.
    ArrivingInput(ctlEditer &editor, const SharedFd &input, NoticeQueue &notices, JobRunner &runner);
    ~ArrivingInput() override;

signals:
    /// The last signal; the document is still held. `kept` is a file that has what came, `size` bytes; null
    /// where there can be none. Not whole: more could not be read or kept.
    void ended(const SharedFd &kept, qint64 size, bool isWhole);

private:
    void finish(JobOutcome outcome);

    std::optional<WorkSign> m_sign; ///< until the end
    InputWork *m_work; ///< owned by the job
    std::optional<Job> m_job;
};
