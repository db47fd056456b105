#include "files/fileversion.h"

#include "files/copycontent.h"

#include <QHash>
#include <QScopeGuard>

#include <cstdlib>
#include <ctime>

#include <fcntl.h>

namespace {

constexpr qsizetype hashedBlock = 4096;
constexpr qint64 nanosecondsPerSecond = 1000000000;

qint64 nanosecondsOf(const timespec &time)
{
    return qint64{ time.tv_sec } * nanosecondsPerSecond + time.tv_nsec;
}

/// Nothing when they cannot be read, or are fewer.
std::optional<size_t> hashOf(const FileCalls &calls, int fd, qint64 from, qint64 to)
{
    ContentHash hash;
    QByteArray block(copiedBlock, Qt::Uninitialized);
    while (from < to) {
        const auto wanted = size_t(qMin<qint64>(block.size(), to - from));
        const ssize_t got = retried([&] { return calls.pread(fd, block.data(), wanted, from); });
        if (got <= 0)
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

bool FileStamp::isYoung() const
{
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return std::abs(nanosecondsOf(now) - modified) < 2 * nanosecondsPerSecond;
}

void ContentHash::add(QByteArrayView bytes)
{
    if (!m_rest.isEmpty()) {
        const QByteArrayView first = bytes.first(qMin(bytes.size(), hashedBlock - m_rest.size()));
        m_rest.append(first);
        bytes = bytes.sliced(first.size());
        if (m_rest.size() < hashedBlock)
            return;
        m_value = qHashBits(m_rest.constData(), size_t(hashedBlock), m_value);
        m_rest.resize(0);
    }
    for (; bytes.size() >= hashedBlock; bytes = bytes.sliced(hashedBlock))
        m_value = qHashBits(bytes.data(), size_t(hashedBlock), m_value);
    m_rest.append(bytes);
}

size_t ContentHash::value() const
{
    return qHashBits(m_rest.constData(), size_t(m_rest.size()), m_value);
}

FileVersion::FileVersion(const FileStamp &stamp, QByteArrayView known)
    : m_stamp(stamp)
    , m_isYoung(stamp.isYoung())
{
    const QByteArrayView end = known.last(qMin<qint64>(known.size(), mostCompared));
    ContentHash hash;
    hash.add(end);
    m_hashedFrom = stamp.size - end.size();
    m_hash = hash.value();
}

FileVersion::FileVersion(const FileStamp &stamp, std::optional<size_t> hash)
    : m_stamp(stamp)
    , m_isYoung(stamp.isYoung())
    , m_hash(hash)
{
}

FileChange FileVersion::changeOf(const QByteArray &name, const FileCalls &calls)
{
    if (m_stamp.inode == 0)
        return FileChange::None;
    struct stat info;
    if (calls.stat(name.constData(), &info) != 0)
        return errno == ENOENT || errno == ENOTDIR ? FileChange::Deleted : FileChange::None;
    const FileStamp now(info);
    if (now == m_stamp && !m_isYoung)
        return FileChange::None;
    if (!S_ISREG(info.st_mode)) // which may have the number of the file that was
        return FileChange::Replaced;
    const bool isSameFile = now.isSameFile(m_stamp);
    if (now.size < m_stamp.size || !isStartOf(name, now, calls))
        return isSameFile ? FileChange::Changed : FileChange::Replaced;
    if (now.size > m_stamp.size)
        return isSameFile ? FileChange::Grown : FileChange::Replaced;
    m_stamp = now;
    m_isYoung = now.isYoung();
    return FileChange::None;
}

/// Whether a file that is at least as large has at its start what this version had.
bool FileVersion::isStartOf(const QByteArray &name, const FileStamp &now, const FileCalls &calls) const
{
    const bool hasGrown = now.size > m_stamp.size;
    const bool isUntouched = now.isSameFile(m_stamp) && now.modified == m_stamp.modified && !hasGrown;
    if (!m_hash)
        return isUntouched;
    if (m_hashedFrom > 0 && !isUntouched && !hasGrown)
        return false;
    const int fd = retried(
        [&] { return calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0); });
    if (fd == -1)
        return isUntouched;
    const auto closer = qScopeGuard([&calls, fd] { calls.close(fd); });
    return hashOf(calls, fd, m_hashedFrom, m_stamp.size) == m_hash;
}
