#include "jobs/jobrun.h"

#include "jobs/jobrunner.h"
#include "jobs/memoryleft.h"

#include <new>

JobWork::~JobWork() = default;

void JobWork::giveUp() { }

JobRun::JobRun(std::unique_ptr<JobWork> work, JobRunner &runner, Listener &listener)
    : m_runner(runner)
    , m_listener(&listener)
    , m_work(std::move(work))
{
}

JobRun::~JobRun() = default;

bool JobRun::step()
{
    const std::optional<JobOutcome> outcome = makeStep();
    if (outcome)
        m_runner.tell(*this, { {}, false, outcome });
    return !outcome;
}

std::optional<JobOutcome> JobRun::makeStep()
{
    const std::lock_guard lock(m_steps);
    if (isStopped()) {
        m_work->giveUp();
        return JobOutcome::Stopped;
    }
    switch (tryStep()) {
    case JobWork::Step::More:
        return std::nullopt;
    case JobWork::Step::Done:
        return JobOutcome::Done;
    case JobWork::Step::Failed:
        return JobOutcome::Failed;
    }
    Q_UNREACHABLE();
}

/// Too little memory is a failure of this job alone.
JobWork::Step JobRun::tryStep()
{
    try {
        MemoryLeft::require();
        return m_work->step(*this);
    } catch (const std::bad_alloc &) {
        m_work->giveUp();
        return JobWork::Step::Failed;
    }
}

void JobRun::tellProgress(JobProgress progress)
{
    m_runner.tell(*this, { progress, false, {} });
}

void JobRun::tellPart()
{
    m_runner.tell(*this, { {}, true, {} });
}

int JobRun::threads() const
{
    return m_runner.threads();
}

void JobRun::spread(int count, const std::function<void(int)> &part)
{
    m_runner.spread(count, part);
}
