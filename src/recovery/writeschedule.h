#pragma once

#include <QtGlobal>

#include <optional>

/// When what was edited is to be written: when typing has paused, and now and then while it goes on. Times
/// are in ms of any one clock.
class WriteSchedule {
public:
    static constexpr qint64 pause = 500;
    /// From an edit to its writing; leaves half a second of two for the disk.
    static constexpr qint64 longestWait = 1500;
    static constexpr qint64 firstRetry = 2000;
    static constexpr qint64 longestRetry = 60000;

    void noteEdit(qint64 now);
    /// What is to be written cannot wait.
    void noteUrgent(qint64 now) { m_firstEdit = now - longestWait; }
    /// All that was edited is on its way.
    void noteBegun() { m_firstEdit.reset(); }
    void noteWritten() { m_failures = 0; }
    /// It is to be tried again, later each time.
    void noteFailure(qint64 now);
    /// It is to be tried again at once.
    void forgetFailures();

    /// Nothing when all is written.
    std::optional<qint64> due() const;

private:
    std::optional<qint64> m_firstEdit;
    qint64 m_lastEdit = 0;
    int m_failures = 0; ///< in a row
    qint64 m_retry = 0; ///< not before
};
