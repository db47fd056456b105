#include "jobs/poolrunner.h"

#include "jobs/spread.h"

#include <QThread>

PoolRunner::Turn::Turn(PoolRunner &runner)
    : m_runner(runner)
{
    setAutoDelete(false);
}

void PoolRunner::Turn::run()
{
    m_runner.takeTask()();
}

PoolRunner::PoolRunner()
    : m_turn(*this)
{
    // One more: a job that waits for a disk shall keep no other waiting.
    m_pool.setMaxThreadCount(QThread::idealThreadCount() + 1);
}

PoolRunner::~PoolRunner()
{
    stopAll();
    m_pool.waitForDone();
}

int PoolRunner::threads() const
{
    return QThread::idealThreadCount();
}

void PoolRunner::spread(int count, const std::function<void(int)> &part)
{
    spreadOver(
        threads() - 1, [this](Task task) { post(std::move(task)); }, count, part);
}

void PoolRunner::start(JobRun &run)
{
    post([this, &run] {
        if (run.step())
            start(run);
    });
}

void PoolRunner::post(Task task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_pool.start(&m_turn);
}

PoolRunner::Task PoolRunner::takeTask()
{
    const std::lock_guard lock(m_mutex);
    Task task = std::move(m_tasks.front());
    m_tasks.pop_front();
    return task;
}
