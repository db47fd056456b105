#include "jobs/spread.h"

#include "jobs/taskpool.h"

#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>

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
            const std::exception_ptr failure = tried(number);
            lock.lock();
            --m_beingMade;
            if (failure) {
                m_failure = failure;
                m_next = m_count; // the others would be in vain
            }
        }
        if (m_beingMade == 0)
            m_areMade.notify_all();
    }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_areMade.wait(lock, [this] { return m_beingMade == 0; });
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    /// What it has thrown.
    std::exception_ptr tried(int number) const
    {
        try {
            m_part(number);
        } catch (...) {
            return std::current_exception();
        }
        return {};
    }

    const int m_count;
    const std::function<void(int)> &m_part; ///< lives while there are parts to be made
    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_areMade;
    int m_next = 0;
    int m_beingMade = 0;
    std::exception_ptr m_failure;
};

} // namespace

void spreadOver(int helpers, const std::function<bool(const std::function<void()> &help)> &post, int count,
    const std::function<void(int)> &part)
{
    const auto parts = std::make_shared<Parts>(count, part);
    const auto help = [parts] { parts->make(); };
    for (int left = std::min(helpers, count - 1); left > 0 && post(help);)
        --left;
    parts->make();
    parts->wait();
}

void makeOneByOne(int count, const std::function<void(int)> &part)
{
    for (int i = 0; i < count; ++i)
        part(i);
}

void spreadOverThreads(int count, const std::function<void(int)> &part)
{
    const int helpers = QThread::idealThreadCount() - 1;
    TaskPool pool(helpers);
    spreadOver(
        helpers, [&pool](const std::function<void()> &help) { return pool.post(help); }, count, part);
}
