#pragma once

#include <QRunnable>
#include <QThreadPool>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

/// Carries out tasks in threads, those that wait longest first. What a task did is seen by all that begin
/// behind it, and by whoever has waited for it.
class TaskPool {
public:
    explicit TaskPool(int threads);
    ~TaskPool() { wait(); }
    Q_DISABLE_COPY_MOVE(TaskPool)

    using Task = std::function<void()>;
    /// In any thread, of a task too.
    void post(Task task);
    /// Until all are carried out, and those that they have posted.
    void wait();

private:
    /// Carries out the task that waits longest. What a pool's thread is given comes by our lock alone, which
    /// is why there is but one of these.
    class Turn : public QRunnable {
    public:
        explicit Turn(TaskPool &pool);
        void run() override;

    private:
        TaskPool &m_pool;
    };
    Task takeTask();
    void noteDone();

    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_areAllDone;
    std::deque<Task> m_tasks;
    int m_open = 0; ///< tasks that wait or are carried out

    Turn m_turn;
    QThreadPool m_pool;
};
