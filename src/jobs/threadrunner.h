#pragma once

#include "jobs/jobrunner.h"
#include "jobs/threadstart.h"

#include <chrono>

/// Makes the steps of each job in a thread of the job's own: for what a disk that does not answer may keep
/// for ever. No job waits for another one's step; but where the system gives no thread, steps are made in the
/// window's.
class ThreadRunner : public JobRunner {
public:
    explicit ThreadRunner(ThreadStart start = startThread);
    /// Waits for the steps that are being made.
    ~ThreadRunner() override;

    /// Gives all jobs up. False: the time was over before the steps that are being made, and this is to stay
    /// for them.
    bool endWithin(std::chrono::milliseconds time);

    int threads() const override { return 1; }
    void spread(int count, const std::function<void(int)> &part) override;

protected:
    bool start(JobRun &run) override;

private:
    void makeSteps(JobRun &run);

    const ThreadStart m_start;
    std::mutex m_mutex; ///< for what follows
    std::condition_variable m_hasEnded;
    int m_open = 0; ///< threads
};
