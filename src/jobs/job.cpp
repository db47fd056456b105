#include "jobs/job.h"

#include "jobs/jobrunner.h"

Job::Job(std::unique_ptr<JobWork> work, JobRunner &runner, QObject *parent)
    : QObject(parent)
    , m_runner(runner)
    , m_run(runner.run(std::move(work), *this))
{
}

Job::~Job()
{
    if (!m_run)
        return;
    m_run->dropListener();
    m_run->stop();
}

void Job::stop()
{
    if (m_run)
        m_run->stop();
}

bool Job::wait(QDeadlineTimer end)
{
    return !m_run || m_runner.wait(m_run, end);
}

void Job::noteProgress(const JobProgress &progress)
{
    m_progress = progress;
    emit progressed(progress);
}

void Job::notePart()
{
    emit partReady();
}

void Job::noteEnd(std::unique_ptr<JobWork> work, JobOutcome outcome)
{
    m_run = nullptr;
    m_work = std::move(work);
    emit finished(outcome);
}

void Job::noteNoEnd()
{
    m_run = nullptr;
}
