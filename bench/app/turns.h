#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QObject>

#include <algorithm>
#include <vector>

#include <ctime>

/// In milliseconds.
inline double msOf(const QElapsedTimer &clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

/// Processor time of this thread, in milliseconds.
inline double processorMs()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// How long the event loop works between two times at which it looks for events.
class Turns {
public:
    Turns()
    {
        const QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
        QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &m_context, [this] {
            note();
            start();
        });
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &m_context, [this] {
            note();
            m_processorStart = processorMs();
        });
        start();
    }
    /// Nobody tells when a wait is over behind which timers fire: of what they do the processor time counts.
    void note()
    {
        const double work = processorMs() - m_processorStart;
        m_turns.push_back(m_clock.isValid() ? msOf(m_clock) : work);
        m_longestWork = std::max(m_longestWork, work);
        m_clock.invalidate();
    }
    double longest() const { return *std::ranges::max_element(m_turns); }
    /// Processor time of the turn that took most of it: other programs do not add to it, nor does waiting for
    /// a disk.
    double longestWork() const { return m_longestWork; }
    double median()
    {
        const auto middle = m_turns.begin() + std::ptrdiff_t(m_turns.size() / 2);
        std::ranges::nth_element(m_turns, middle);
        return *middle;
    }

private:
    void start()
    {
        m_clock.start();
        m_processorStart = processorMs();
    }

    QObject m_context;
    QElapsedTimer m_clock;
    double m_processorStart = 0;
    double m_longestWork = 0;
    std::vector<double> m_turns;
};
