#pragma once

#include "jobs/threadstart.h"

#include <QtGlobal>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

/// Carries out tasks in threads, those that wait longest first. What a task did is seen by all that begin
/// behind it, and by whoever has waited for it.
///
/// Threads are started when there is something to do for them, and stay. If the system gives fewer than are
/// wanted, those that there are do the work.
class TaskPool {
public:
    explicit TaskPool(int threads, ThreadStart start = startThread);
    /// Waits.
    ~TaskPool();
    Q_DISABLE_COPY_MOVE(TaskPool)

    using Task = std::function<void()>;
    /// In any thread, of a task too, which always succeeds. False: the system gives no thread at all just
    /// now, and the task is not taken.
    [[nodiscard]] bool post(const Task &task);
    /// Until all are carried out, and those that they have posted.
    void wait();

private:
    void addThread();
    void carryOutAll();

    const std::size_t m_mostThreads;
    const ThreadStart m_start;

    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_hasNews; ///< a task, or the end
    std::condition_variable m_areAllDone;
    std::deque<Task> m_tasks;
    std::size_t m_idle = 0; ///< threads that carry out none
    int m_open = 0; ///< tasks that wait or are carried out
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};
