#pragma once

#include <chrono>

/// Processes events amid work of the window's thread that is made of millions of small things, behind each of
/// which events are due.
///
/// Asking the system whether there are any takes as long as such a thing. So events that were posted, by whom
/// and in whichever thread, are processed each time. Those that others bring (the display, timers, other
/// programs) are looked for when some came the last time, and else as soon as `interval` has passed: they
/// wait no longer than threads take to wake one another up.
class PendingEvents {
public:
    using Clock = std::chrono::steady_clock;

    explicit PendingEvents(Clock::duration interval = std::chrono::microseconds(50))
        : m_interval(interval)
    {
    }

    /// Returns when it was called.
    Clock::time_point process();

private:
    const Clock::duration m_interval;
    Clock::time_point m_nextLook; ///< long ago: the first time all are looked for
};
