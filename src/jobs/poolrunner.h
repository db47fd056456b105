#pragma once

#include "jobs/jobrunner.h"
#include "jobs/taskpool.h"

/// Makes the steps in threads of a pool of its own; jobs take turns there, step by step.
class PoolRunner : public JobRunner {
public:
    /// In as many threads as there are processors and one more: a job that waits for a disk shall keep no
    /// other waiting.
    PoolRunner();
    /// In one thread, the steps of all jobs one after the other.
    struct OneThread { };
    explicit PoolRunner(OneThread);
    /// Waits for the steps that are being made.
    ~PoolRunner() override;

    int threads() const override { return m_threads; }
    void spread(int count, const std::function<void(int)> &part) override;

protected:
    void start(JobRun &run) override;

private:
    const int m_threads; ///< that compute at once
    TaskPool m_pool;
};
