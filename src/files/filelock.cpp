#include "files/filelock.h"

#include <thread>

#include <fcntl.h>
#include <sys/file.h>

bool lockNamed(const FileCalls &calls, int file)
{
    struct stat info = {};
    if (retried([&] { return calls.flock(file, LOCK_EX | LOCK_NB); }) != 0 || calls.fstat(file, &info) != 0)
        return false;
    errno = EWOULDBLOCK;
    return info.st_nlink > 0;
}

FileLock::FileLock(QByteArray name, const FileCalls &calls)
    : m_calls(calls)
    , m_name(std::move(name))
{
}

/// Others that have opened the file meanwhile find that it has no name any more.
FileLock::~FileLock()
{
    if (m_file == -1)
        return;
    m_calls.unlink(m_name.constData());
    m_calls.close(m_file);
}

bool FileLock::lock(std::chrono::milliseconds longest)
{
    constexpr std::chrono::milliseconds pause{ 10 };
    const auto end = std::chrono::steady_clock::now() + longest;
    bool isLocked = tryLock();
    while (!isLocked && errno == EWOULDBLOCK && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(pause);
        isLocked = tryLock();
    }
    return isLocked;
}

/// With errno; EWOULDBLOCK: another one has it, or had it just now.
bool FileLock::tryLock()
{
    constexpr mode_t privateFile = 0600;
    const int file = retried([&] {
        return m_calls.open(m_name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, privateFile);
    });
    if (file == -1)
        return false;
    if (lockNamed(m_calls, file)) {
        m_file = file;
        return true;
    }
    const int error = errno;
    if (error != EWOULDBLOCK) // nobody has locks here
        m_calls.unlink(m_name.constData());
    m_calls.close(file);
    errno = error;
    return false;
}
