#include "jobs/poolrunner.h"

#include "jobs/spread.h"

#include <QThread>

#include <utility>

PoolRunner::PoolRunner(ThreadStart start)
    : m_threads(QThread::idealThreadCount())
    , m_pool(m_threads + 1, std::move(start))
{
}

PoolRunner::PoolRunner(OneThread, ThreadStart start)
    : m_threads(1)
    , m_pool(1, std::move(start))
{
}

PoolRunner::~PoolRunner()
{
    stopAll();
    m_pool.wait();
}

void PoolRunner::spread(int count, const std::function<void(int)> &part)
{
    spreadOver(
        m_threads - 1, [this](const TaskPool::Task &task) { return m_pool.post(task); }, count, part);
}

bool PoolRunner::start(JobRun &run)
{
    return m_pool.post([this, &run] {
        if (run.step())
            static_cast<void>(start(run)); // by this thread, if by no other
    });
}
