#include "jobs/taskpool.h"

TaskPool::Turn::Turn(TaskPool &pool)
    : m_pool(pool)
{
    setAutoDelete(false);
}

void TaskPool::Turn::run()
{
    m_pool.takeTask()();
    m_pool.noteDone();
}

TaskPool::TaskPool(int threads)
    : m_turn(*this)
{
    m_pool.setMaxThreadCount(threads);
}

void TaskPool::wait()
{
    std::unique_lock lock(m_mutex);
    m_areAllDone.wait(lock, [this] { return m_open == 0; });
}

void TaskPool::post(Task task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        ++m_open;
    }
    m_pool.start(&m_turn);
}

TaskPool::Task TaskPool::takeTask()
{
    const std::lock_guard lock(m_mutex);
    Task task = std::move(m_tasks.front());
    m_tasks.pop_front();
    return task;
}

void TaskPool::noteDone()
{
    const std::lock_guard lock(m_mutex);
    if (--m_open == 0)
        m_areAllDone.notify_all();
}
