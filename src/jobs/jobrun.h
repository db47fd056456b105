#pragma once

#include "jobs/jobwork.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

class JobRunner;

/// One execution of a work. It outlives the job that began it where a step is being made.
class JobRun final : private JobTurn {
public:
    /// Who is told of it, in the window's thread.
    class Listener {
    public:
        virtual void noteProgress(const JobProgress &progress) = 0;
        virtual void notePart() = 0;
        virtual void noteEnd(std::unique_ptr<JobWork> work, JobOutcome outcome) = 0;
        /// The runner has ended before.
        virtual void noteNoEnd() = 0;

    protected:
        ~Listener() = default;
    };

    JobRun(std::unique_ptr<JobWork> work, JobRunner &runner, Listener &listener);
    ~JobRun();
    Q_DISABLE_COPY_MOVE(JobRun)

    /// Makes one step, in whatever thread; whether there is another one to make. After the last one the
    /// thread may not touch the run.
    bool step();
    void stop() { m_isStopped = true; }

    /// Null when nobody is told any more.
    Listener *listener() const { return m_listener; }
    void dropListener() { m_listener = nullptr; }
    std::unique_ptr<JobWork> takeWork() { return std::move(m_work); }

private:
    bool isStopped() const override { return m_isStopped; }
    void tellProgress(JobProgress progress) override;
    void tellPart() override;
    int threads() const override;
    void spread(int count, const std::function<void(int)> &part) override;
    std::optional<JobOutcome> makeStep();
    JobWork::Step tryStep();

    JobRunner &m_runner;
    Listener *m_listener; ///< of the window's thread alone
    std::atomic<bool> m_isStopped = false;
    std::mutex m_steps; ///< what one thread has done the next one sees
    std::unique_ptr<JobWork> m_work;
};
