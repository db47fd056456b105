#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QObject>

#include <algorithm>
#include <vector>

/// In milliseconds.
inline double msOf(const QElapsedTimer &clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

/// How long the event loop works between two times at which it looks for events.
class Turns {
public:
    Turns()
    {
        const QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
        QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &m_context, [this] {
            note();
            m_clock.start();
        });
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &m_context, [this] { note(); });
        m_clock.start();
    }
    void note()
    {
        if (m_clock.isValid())
            m_turns.push_back(msOf(m_clock));
        m_clock.invalidate();
    }
    double longest() const { return *std::ranges::max_element(m_turns); }
    double median()
    {
        const auto middle = m_turns.begin() + std::ptrdiff_t(m_turns.size() / 2);
        std::ranges::nth_element(m_turns, middle);
        return *middle;
    }

private:
    QObject m_context;
    QElapsedTimer m_clock;
    std::vector<double> m_turns;
};
