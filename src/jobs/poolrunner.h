#pragma once

#include "jobs/jobrunner.h"
#include "jobs/taskpool.h"

/// Makes the steps in threads of a pool of its own; jobs take turns there, step by step. Where the system
/// gives no thread at all, they are made in the window's.
class PoolRunner : public JobRunner {
public:
    /// In as many threads as there are processors and one more: a job that waits for a disk shall keep no
    /// other waiting.
    explicit PoolRunner(ThreadStart start = startThread);
    /// In one thread, the steps of all jobs one after the other.
    struct OneThread { };
    explicit PoolRunner(OneThread, ThreadStart start = startThread);
    /// Waits for the steps that are being made.
    ~PoolRunner() override;

    int threads() const override { return m_threads; }
    void spread(int count, const std::function<void(int)> &part) override;

protected:
    bool start(JobRun &run) override;

private:
    const int m_threads; ///< that compute at once
    TaskPool m_pool;
};
