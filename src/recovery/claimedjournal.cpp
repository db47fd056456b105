#include "recovery/claimedjournal.h"

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

/// And nobody has removed it.
bool isOwnFile(int file, const FileCalls &calls)
{
    struct stat info = {};
    return calls.fstat(file, &info) == 0 && S_ISREG(info.st_mode) && info.st_uid == geteuid()
        && info.st_nlink > 0;
}

/// Whether nobody has it but those who look what is in it: they share it among them, each for a moment.
bool isLookedAt(int file, const FileCalls &calls)
{
    const bool isShared = retried([&] { return calls.flock(file, LOCK_SH | LOCK_NB); }) == 0;
    if (isShared)
        calls.flock(file, LOCK_UN);
    return isShared;
}

bool isLocked(int file, int lock, const FileCalls &calls)
{
    constexpr int mostLooks = 200;
    const auto tryIt = [&] { return retried([&] { return calls.flock(file, lock | LOCK_NB); }) == 0; };
    bool isOurs = tryIt();
    for (int look = 0; !isOurs && look < mostLooks && isLookedAt(file, calls); ++look) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        isOurs = tryIt();
    }
    return isOurs;
}

} // namespace

ClaimedJournal::ClaimedJournal(ClaimedJournal &&other) noexcept
    : m_name(std::move(other.m_name))
    , m_file(std::exchange(other.m_file, -1))
    , m_calls(other.m_calls)
{
}

ClaimedJournal &ClaimedJournal::operator=(ClaimedJournal &&other) noexcept
{
    if (this != &other) {
        close();
        m_name = std::move(other.m_name);
        m_file = std::exchange(other.m_file, -1);
        m_calls = other.m_calls;
    }
    return *this;
}

ClaimedJournal::~ClaimedJournal()
{
    close();
}

void ClaimedJournal::close()
{
    if (m_file != -1)
        m_calls->close(std::exchange(m_file, -1));
}

ClaimedJournal ClaimedJournal::claim(const QByteArray &name, const FileCalls &calls)
{
    const int file = openUnused(name, LOCK_EX, calls);
    return file == -1 ? ClaimedJournal() : ClaimedJournal(name, file, calls);
}

SharedFd ClaimedJournal::openAgain() const
{
    const int file = retried([&] { return m_calls->open(m_name.constData(), O_RDONLY | O_CLOEXEC, 0); });
    return file == -1 ? SharedFd() : std::make_shared<OpenFd>(file);
}

bool ClaimedJournal::discard()
{
    const bool isGone = m_file == -1 || m_calls->unlink(m_name.constData()) == 0 || errno == ENOENT;
    if (isGone)
        close();
    return isGone;
}

int openUnused(const QByteArray &name, int lock, const FileCalls &calls)
{
    const int file = retried([&] {
        return calls.open(name.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0);
    });
    if (file == -1)
        return -1;
    const bool isUnused = isOwnFile(file, calls) && isLocked(file, lock, calls) && isOwnFile(file, calls);
    if (isUnused)
        return file;
    calls.close(file);
    return -1;
}
