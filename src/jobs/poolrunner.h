#pragma once

#include "jobs/jobrunner.h"

#include <QRunnable>
#include <QThreadPool>

#include <deque>
#include <functional>

/// Makes the steps in threads of a pool of its own; jobs take turns there, step by step.
class PoolRunner : public JobRunner {
public:
    PoolRunner();
    /// Waits for the steps that are being made.
    ~PoolRunner() override;

    int threads() const override;
    void spread(int count, const std::function<void(int)> &part) override;

protected:
    void start(JobRun &run) override;

private:
    /// Carries out the task that waits longest. What a pool's thread is given comes by our lock alone, which
    /// is why there is but one of these.
    class Turn : public QRunnable {
    public:
        explicit Turn(PoolRunner &runner);
        void run() override;

    private:
        PoolRunner &m_runner;
    };
    using Task = std::function<void()>;
    void post(Task task);
    Task takeTask();

    std::mutex m_mutex; ///< for the tasks
    std::deque<Task> m_tasks;
    Turn m_turn;
    QThreadPool m_pool;
};
