#include "files/fileversion.h"

#include "files/copycontent.h"
#include "files/endorder.h"

#include <QScopeGuard>

#include <cstdlib>
#include <ctime>

namespace {

constexpr qint64 nanosecondsPerSecond = 1000000000;

qint64 nanosecondsOf(const timespec &time)
{
    return qint64{ time.tv_sec } * nanosecondsPerSecond + time.tv_nsec;
}

/// Nothing when they cannot be read, or are fewer.
std::optional<quint64> hashOf(const FileCalls &calls, int fd, qint64 from, qint64 to)
{
    ContentHash hash;
    QByteArray block(copiedBlock, Qt::Uninitialized);
    while (from < to) {
        const auto wanted = size_t(qMin<qint64>(block.size(), to - from));
        const ssize_t got = retried([&] { return calls.pread(fd, block.data(), wanted, from); });
        if (got <= 0 || EndOrder::isGiven())
            return std::nullopt;
        hash.add(QByteArrayView(block).first(got));
        from += got;
    }
    return hash.value();
}

} // namespace

FileStamp::FileStamp(const struct stat &info)
    : device(info.st_dev)
    , inode(info.st_ino)
    , size(info.st_size)
    , modified(nanosecondsOf(info.st_mtim))
    , changed(nanosecondsOf(info.st_ctim))
{
}

FileStamp stampOf(const QByteArray &name, const FileCalls &calls)
{
    struct stat info;
    return calls.stat(name.constData(), &info) == 0 ? FileStamp(info) : FileStamp();
}

bool FileStamp::isYoungAt(qint64 now) const
{
    constexpr qint64 twoSteps = nanosecondsPerSecond / 50;
    const bool isInWholeSeconds = modified % nanosecondsPerSecond == 0;
    return std::abs(now - modified) < (isInWholeSeconds ? 2 * nanosecondsPerSecond : twoSteps);
}

namespace {

bool isYoung(const FileStamp &stamp)
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return stamp.isYoungAt(nanosecondsOf(now));
}

} // namespace

FileVersion::FileVersion(const FileStamp &stamp, const ContentHash &content)
    : m_stamp(stamp)
    , m_isYoung(isYoung(stamp))
    , m_content(content)
{
    m_stamp.size = content.size();
}

namespace {

bool isGone(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

/// Whatever size is told of it: the system's own files are told as large as they can become.
bool endsAt(qint64 size, const QByteArray &name, const FileCalls &calls)
{
    const int fd = openForReading(calls, name);
    if (fd == -1)
        return false;
    const auto closer = qScopeGuard([&calls, fd] { calls.close(fd); });
    char next = 0;
    return retried([&] { return calls.pread(fd, &next, 1, size); }) == 0;
}

} // namespace

FileChange FileVersion::changeOf(const QByteArray &name, const FileCalls &calls, FileChange unanswered)
{
    if (m_stamp.inode == 0)
        return FileChange::None;
    struct stat info;
    if (calls.stat(name.constData(), &info) != 0)
        return isGone(errno) ? FileChange::Deleted : unanswered;
    FileStamp now(info);
    if (now == m_stamp && !m_isYoung)
        return FileChange::None;
    if (!S_ISREG(info.st_mode)) // which may have the number of the file that was
        return FileChange::Replaced;
    if (now.size > m_stamp.size && endsAt(m_stamp.size, name, calls))
        now.size = m_stamp.size;
    const bool isSameFile = now.isSameFile(m_stamp);
    const auto isStart = now.size < m_stamp.size ? std::optional(false) : isStartOf(name, now, calls);
    if (!isStart)
        return FileChange::Unsure;
    if (!*isStart)
        return isSameFile ? FileChange::Changed : FileChange::Replaced;
    if (now.size > m_stamp.size)
        return isSameFile ? FileChange::Grown : FileChange::Replaced;
    m_stamp = now;
    m_isYoung = isYoung(now);
    return FileChange::None;
}

/// Whether a file that is at least as large has at its start what this version had; nothing where all of it
/// would have to be read for that.
std::optional<bool> FileVersion::isStartOf(
    const QByteArray &name, const FileStamp &now, const FileCalls &calls)
{
    const bool hasGrown = now.size > m_stamp.size;
    const bool isUntouched = now.isSameFile(m_stamp) && now.modified == m_stamp.modified && !hasGrown;
    if (const auto isSeen = isSeenIn(now))
        return isSeen;
    const int fd = openForReading(calls, name);
    if (fd == -1)
        return isUntouched;
    const auto closer = qScopeGuard([&calls, fd] { calls.close(fd); });
    const bool isAllRead = m_content.endStart() == 0;
    const qint64 from = isAllRead ? 0 : m_content.endStart();
    const auto hash = hashOf(calls, fd, from, m_stamp.size);
    if (hash && isAllRead && !hasGrown && !isYoung(now))
        noteSeen({ now, *hash });
    if (hash != (isAllRead ? m_content.value() : m_content.endValue()))
        return false;
    const bool isKnown = isAllRead || hasGrown || now == m_stamp;
    return isKnown ? std::optional(true) : std::nullopt;
}

/// What is young may be written once more without a sign of it.
std::optional<bool> FileVersion::isSeenIn(const FileStamp &now)
{
    if (!m_seen || m_seen->stamp != now)
        return std::nullopt;
    const bool isSame = m_seen->hash == m_content.value();
    if (isYoung(now))
        m_seen.reset();
    return isSame;
}

void FileVersion::noteSeen(const SeenContent &seen)
{
    if (seen.stamp.size == m_stamp.size)
        m_seen = seen;
}
