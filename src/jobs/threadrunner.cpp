#include "jobs/threadrunner.h"

#include "jobs/spread.h"

#include <thread>

ThreadRunner::~ThreadRunner()
{
    stopAll();
    std::unique_lock lock(m_mutex);
    m_hasEnded.wait(lock, [this] { return m_open == 0; });
}

bool ThreadRunner::endWithin(std::chrono::milliseconds time)
{
    stopAll();
    std::unique_lock lock(m_mutex);
    return m_hasEnded.wait_for(lock, time, [this] { return m_open == 0; });
}

void ThreadRunner::spread(int count, const std::function<void(int)> &part)
{
    makeOneByOne(count, part);
}

void ThreadRunner::start(JobRun &run)
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_open;
    }
    std::thread([this, &run] { makeSteps(run); }).detach();
}

void ThreadRunner::makeSteps(JobRun &run)
{
    while (run.step()) { }
    const std::lock_guard lock(m_mutex);
    --m_open;
    m_hasEnded.notify_all();
}
