#include "files/readfile.h"

#include "files/endorder.h"
#include "files/filename.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Nothing when all is well.
using Failure = std::optional<ReadFailure>;

qint64 physicalMemory()
{
    return qint64{ sysconf(_SC_PHYS_PAGES) } * sysconf(_SC_PAGESIZE);
}

/// Whether a file may be opened and read: opening a pipe or a device could block or do something.
Failure refusal(const struct stat &status)
{
    if (S_ISDIR(status.st_mode))
        return ReadFailure::Folder;
    if (!S_ISREG(status.st_mode))
        return ReadFailure::Device;
    return status.st_size > physicalMemory() ? ReadFailure::TooLarge : Failure();
}

/// Reads from an offset to the end, also of a file that has become shorter or longer meanwhile.
Failure readToEnd(const FileReader &file, qint64 from, QByteArray &bytes)
{
    constexpr qint64 blockSize = qint64{ 1 } << 20;
    constexpr qint64 leastRoom = 65536;
    bytes.resize(std::max<qint64>(0, file.stamp().size - from) + 1);
    qint64 reached = 0;
    for (;;) {
        EndOrder::obeyIfGiven();
        if (reached == bytes.size())
            bytes.resize(reached + std::max(leastRoom, reached / 8));
        const qint64 size = std::min(blockSize, bytes.size() - reached);
        const auto count = file.read(bytes.data() + reached, size, from + reached);
        if (!count)
            return ReadFailure::BrokenOff;
        if (*count == 0)
            break;
        reached += *count;
    }
    bytes.truncate(reached);
    return {};
}

} // namespace

FileReader::FileReader(const FileCalls &calls)
    : m_calls(calls)
{
}

FileReader::~FileReader()
{
    if (m_file != noFile)
        m_calls.close(m_file);
}

Failure FileReader::open(const QString &fileName)
{
    const QByteArray name = FileName::toBytes(fileName);
    struct stat status = {};
    if (m_calls.stat(name.constData(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? ReadFailure::Missing : ReadFailure::NotOpened;
    const Failure failure = take(status);
    if (failure || status.st_size == 0)
        return failure;
    m_file = retried(
        [&] { return m_calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0); });
    if (m_file < 0 || m_calls.fstat(m_file, &status) != 0)
        return ReadFailure::NotOpened;
    return take(status); // another file may have taken the name meanwhile
}

Failure FileReader::take(const struct stat &status)
{
    m_stamp = FileStamp(status);
    return refusal(status);
}

std::optional<qint64> FileReader::read(char *to, qint64 size, qint64 offset) const
{
    if (m_file == noFile)
        return 0;
    const ssize_t count = retried([&] { return m_calls.pread(m_file, to, size_t(size), offset); });
    return count < 0 ? std::nullopt : std::optional<qint64>(count);
}

std::optional<ReadFailure> readFileFrom(
    const QString &fileName, qint64 from, QByteArray &bytes, FileStamp &stamp, const FileCalls &calls)
{
    FileReader file(calls);
    if (const Failure failure = file.open(fileName))
        return failure;
    QByteArray read;
    if (const Failure failure = readToEnd(file, from, read))
        return failure;
    stamp = file.stamp();
    stamp.size = from + read.size();
    bytes = std::move(read);
    return std::nullopt;
}
