#include "recovery/writeschedule.h"

void WriteSchedule::noteEdit(qint64 now)
{
    if (!m_firstEdit)
        m_firstEdit = now;
    m_lastEdit = now;
}

void WriteSchedule::noteFailure(qint64 now)
{
    constexpr int mostDoublings = 5;
    m_retry = now + qMin(longestRetry, firstRetry << qMin(m_failures, mostDoublings));
    ++m_failures;
    noteEdit(now);
}

void WriteSchedule::forgetFailures()
{
    m_failures = 0;
    m_retry = 0;
}

std::optional<qint64> WriteSchedule::due() const
{
    if (!m_firstEdit)
        return std::nullopt;
    const qint64 wanted = qMin(m_lastEdit + pause, *m_firstEdit + longestWait);
    return m_failures > 0 ? qMax(wanted, m_retry) : wanted;
}
