#include "jobs/poolrunner.h"

#include "jobs/spread.h"

#include <QThread>

PoolRunner::PoolRunner()
    : m_threads(QThread::idealThreadCount())
    , m_pool(m_threads + 1)
{
}

PoolRunner::PoolRunner(OneThread)
    : m_threads(1)
    , m_pool(1)
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
        m_threads - 1, [this](TaskPool::Task task) { m_pool.post(std::move(task)); }, count, part);
}

void PoolRunner::start(JobRun &run)
{
    m_pool.post([this, &run] {
        if (run.step())
            start(run);
    });
}
