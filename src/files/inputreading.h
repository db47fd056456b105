#pragma once

#include "files/sharedfd.h"

#include <atomic>
#include <chrono>
#include <utility>

/// Reads what comes from a pipe or the like into a file without a name, step by step, until it ends or nobody
/// waits for more.
///
/// Threads: steps are made in one at a time; end() and kept() are called in any.
class InputReading {
public:
    enum class Step { More, Done, Failed };
    /// How long a step waits.
    struct Pace {
        std::chrono::milliseconds patience{ 50 }; ///< for something to come, at most
        std::chrono::milliseconds gathering{ 20 }; ///< for more of what has begun to come
    };
    explicit InputReading(SharedFd input, Pace pace);
    explicit InputReading(SharedFd input)
        : InputReading(std::move(input), Pace())
    {
    }

    /// What has come by a step is in the file.
    Step step();
    /// What has come by now is all: the next step is the last.
    void end() { m_isEnded = true; }
    /// Bytes that have come.
    qint64 size() const { return m_size; }
    /// The last step has failed: there is more, or there may be.
    bool isBroken() const { return m_isBroken; }
    /// What has come. Null, with errno: there can be no such file.
    const SharedFd &kept() const { return m_kept; }

private:
    Step readSome(char *room, qint64 size);
    bool isThereMore(int patience) const;
    bool keep(const char *bytes, qint64 count);

    const SharedFd m_input;
    const Pace m_pace;
    const SharedFd m_kept;
    qint64 m_size = 0;
    bool m_isBroken = false;
    std::atomic<bool> m_isEnded = false;
};
