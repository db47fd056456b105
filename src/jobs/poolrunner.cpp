#include "jobs/poolrunner.h"

#include <QThread>

#include <algorithm>

namespace {

/// The parts of a step. Who helps may come when all parts are made, and the step is over.
class Parts {
public:
    Parts(int count, const std::function<void(int)> &part)
        : m_count(count)
        , m_part(part)
    {
    }

    /// Makes parts until none is left.
    void make()
    {
        std::unique_lock lock(m_mutex);
        while (m_next < m_count) {
            const int number = m_next++;
            ++m_beingMade;
            lock.unlock();
            m_part(number);
            lock.lock();
            --m_beingMade;
        }
        if (m_beingMade == 0)
            m_areMade.notify_all();
    }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_areMade.wait(lock, [this] { return m_beingMade == 0; });
    }

private:
    const int m_count;
    const std::function<void(int)> &m_part; ///< lives while there are parts to be made
    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_areMade;
    int m_next = 0;
    int m_beingMade = 0;
};

} // namespace

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
    const auto parts = std::make_shared<Parts>(count, part);
    for (int helpers = std::min(count, threads()) - 1; helpers > 0; --helpers)
        post([parts] { parts->make(); });
    parts->make();
    parts->wait();
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
