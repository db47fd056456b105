#pragma once

#include "jobs/jobrun.h"

#include <QDeadlineTimer>
#include <QObject>

/// Something that takes longer than the window can wait for: it is computed in other threads, and all that
/// comes of it is told in the thread of the window, from the event loop.
///
/// The work has the results. It is the window's thread's again when finished() is emitted, and lives as long
/// as the job; before, only what it hands over may be touched.
class Job : public QObject, private JobRun::Listener {
    Q_OBJECT
public:
    /// Begins at once. `runner` is not owned, and may end before the job, which never finishes then.
    Job(std::unique_ptr<JobWork> work, JobRunner &runner, QObject *parent = nullptr);
    /// A job that is not finished is given up: the work goes when its step has ended, and nobody waits for
    /// that.
    ~Job() override;

    /// Returns at once; finished() comes in any case. What has been done by then is done.
    void stop();
    /// Waits without an event loop. Whether finished() has been emitted by the end of the time.
    bool wait(QDeadlineTimer end);
    bool isFinished() const { return m_run == nullptr; }
    JobProgress progress() const { return m_progress; }

signals:
    /// No more often than the event loop comes round.
    void progressed(const JobProgress &progress);
    /// Something waits to be taken over; one signal may stand for several.
    void partReady();
    /// The last signal; what was ready was told before.
    void finished(JobOutcome outcome);

private:
    void noteProgress(const JobProgress &progress) override;
    void notePart() override;
    void noteEnd(std::unique_ptr<JobWork> work, JobOutcome outcome) override;
    void noteNoEnd() override;

    JobRunner &m_runner;
    JobRun *m_run; ///< null: there is nothing more to come
    std::unique_ptr<JobWork> m_work; ///< from the end on
    JobProgress m_progress;
};
