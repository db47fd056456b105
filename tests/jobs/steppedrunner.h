#pragma once

#include "jobs/jobrunner.h"

#include <algorithm>
#include <deque>

/// Makes the steps of jobs when the test says so, in the thread of the window; jobs take turns.
class SteppedRunner : public JobRunner {
public:
    /// One step of the job that has waited longest; what comes of it is told at once. False: there is none.
    bool step()
    {
        const bool isMade = stepUntold();
        while (isMade && deliver()) { }
        return isMade;
    }

    /// The same, but it is told from the event loop.
    bool stepUntold()
    {
        if (m_waiting.empty())
            return false;
        JobRun *const run = m_waiting.front();
        m_waiting.pop_front();
        if (run->step())
            m_waiting.push_back(run);
        return true;
    }

    /// Until all jobs are finished; how many steps that took.
    int runAll()
    {
        int steps = 0;
        while (step())
            ++steps;
        return steps;
    }

    bool isIdle() const { return m_waiting.empty(); }

    int threads() const override { return 2; }
    /// The last part first: none may need the one before.
    void spread(int count, const std::function<void(int)> &part) override
    {
        while (count > 0)
            part(--count);
    }

protected:
    bool start(JobRun &run) override
    {
        m_waiting.push_back(&run);
        return true;
    }
    void makeAllSteps(JobRun &run) override
    {
        const auto place = std::ranges::find(m_waiting, &run);
        if (place == m_waiting.end())
            return;
        m_waiting.erase(place);
        while (run.step()) { }
    }

private:
    std::deque<JobRun *> m_waiting;
};
