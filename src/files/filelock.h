#pragma once

#include "files/filecalls.h"

#include <QByteArray>

#include <chrono>

/// Locks a file that was just opened. False with errno: EWOULDBLOCK when somebody has the lock, and when
/// somebody who had it until now has taken the file's name away with it.
bool lockNamed(const FileCalls &calls, int file);

/// Keeps other processes, and other locks of this one, out for as long as it lives. It is a file beside what
/// it is about, which goes away with it; one that a stopped program left behind is in nobody's way.
class FileLock {
public:
    /// `name` in the file system's own bytes, in a folder that is there. `calls` is not owned.
    explicit FileLock(QByteArray name, const FileCalls &calls = FileCalls::system());
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    /// Waits for others, up to that long. False: in vain, or the file cannot be made or locked.
    bool lock(std::chrono::milliseconds longest);

private:
    bool tryLock();

    const FileCalls &m_calls;
    const QByteArray m_name;
    int m_file = -1;
};
