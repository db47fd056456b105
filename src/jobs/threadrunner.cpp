#include "jobs/threadrunner.h"

#include "jobs/spread.h"

#include <utility>

ThreadRunner::ThreadRunner(ThreadStart start)
    : m_start(std::move(start))
{
}

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

bool ThreadRunner::start(JobRun &run)
{
    const std::lock_guard lock(m_mutex);
    std::thread thread = m_start([this, &run] { makeSteps(run); });
    if (!thread.joinable())
        return false;
    ++m_open;
    thread.detach();
    return true;
}

void ThreadRunner::makeSteps(JobRun &run)
{
    while (run.step()) { }
    const std::lock_guard lock(m_mutex);
    --m_open;
    m_hasEnded.notify_all();
}
