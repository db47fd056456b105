#include "jobs/taskpool.h"

#include <utility>

TaskPool::TaskPool(int threads, ThreadStart start)
    : m_mostThreads(std::size_t(threads))
    , m_start(std::move(start))
{
    m_threads.reserve(m_mostThreads);
}

TaskPool::~TaskPool()
{
    wait();
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_hasNews.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void TaskPool::wait()
{
    std::unique_lock lock(m_mutex);
    m_areAllDone.wait(lock, [this] { return m_open == 0; });
}

bool TaskPool::post(const Task &task)
{
    const std::lock_guard lock(m_mutex);
    if (m_tasks.size() >= m_idle && m_threads.size() < m_mostThreads)
        addThread();
    if (m_threads.empty())
        return false;
    m_tasks.push_back(task);
    ++m_open;
    m_hasNews.notify_one();
    return true;
}

void TaskPool::addThread()
{
    std::thread thread = m_start([this] { carryOutAll(); });
    if (!thread.joinable())
        return;
    m_threads.push_back(std::move(thread));
    ++m_idle;
}

/// What a task holds goes before it is done.
void TaskPool::carryOutAll()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_hasNews.wait(lock, [this] { return m_isEnding || !m_tasks.empty(); });
        if (m_tasks.empty())
            return;
        Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        --m_idle;
        lock.unlock();
        task();
        task = {};
        lock.lock();
        ++m_idle;
        if (--m_open == 0)
            m_areAllDone.notify_all();
    }
}
