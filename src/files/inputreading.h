#pragma once

#include "files/sharedfd.h"

#include <atomic>
#include <chrono>

/// Reads what comes from a pipe or the like into a file without a name, step by step, until it ends or nobody
/// waits for more.
///
/// Threads: steps are made in one at a time; end() is called in any.
class InputReading {
public:
    enum class Step { More, Done, Failed };
    /// A step waits so long at most for something to come.
    explicit InputReading(SharedFd input, std::chrono::milliseconds patience = std::chrono::milliseconds(50));

    Step step();
    /// What has come by now is all: the next step is the last.
    void end() { m_isEnded = true; }
    /// Bytes that have come.
    qint64 size() const { return m_size; }
    /// Behind the last step: what has come, which is not all where that has failed. Null, with errno: there
    /// can be no such file.
    const SharedFd &kept() const { return m_kept; }

private:
    bool isThereMore() const;
    bool keep(const char *bytes, qint64 count);

    const SharedFd m_input;
    const std::chrono::milliseconds m_patience;
    SharedFd m_kept;
    qint64 m_size = 0;
    std::atomic<bool> m_isEnded = false;
};
