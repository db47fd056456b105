#pragma once

#include "jobs/handover.h"
#include "jobs/jobwork.h"

/// What a CountingWork tells of its life. It outlives the work.
struct CountingLife {
    int steps = 0;
    bool isGivenUp = false;
    bool isDestroyed = false;
};

/// Counts up to a number, a step each, and hands each over.
class CountingWork : public JobWork {
public:
    explicit CountingWork(int last, CountingLife *life = nullptr)
        : m_last(last)
        , m_life(life)
    {
    }
    ~CountingWork() override
    {
        if (m_life)
            m_life->isDestroyed = true;
    }

    void failAt(int number) { m_failure = number; }

    Step step(JobTurn &turn) override
    {
        if (m_life)
            ++m_life->steps;
        if (++m_number == m_failure)
            return Step::Failed;
        numbers.put(int(m_number));
        turn.tellPart();
        turn.tellProgress({ m_number, m_last });
        return m_number == m_last ? Step::Done : Step::More;
    }
    void giveUp() override
    {
        if (m_life)
            m_life->isGivenUp = true;
    }

    HandOver<int> numbers;

private:
    const int m_last;
    CountingLife *m_life;
    int m_number = 0;
    int m_failure = 0;
};
