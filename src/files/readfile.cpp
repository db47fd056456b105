#include "files/readfile.h"

#include "files/endorder.h"
#include "files/filename.h"

#include <QScopeGuard>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
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

/// An array whose bytes are not set; null bytes are neither needed nor cheap in a file of a gibibyte.
QByteArray uninitialized(qsizetype size)
{
    constexpr size_t hugePage = size_t{ 1 } << 21;
    QByteArray bytes(size, Qt::Uninitialized);
    const auto begin = reinterpret_cast<size_t>(bytes.data());
    const size_t alignedBegin = (begin + hugePage - 1) & ~(hugePage - 1);
    const size_t alignedEnd = (begin + static_cast<size_t>(size)) & ~(hugePage - 1);
    if (alignedEnd
        > alignedBegin) // only a hint: the first touch of many small pages costs more than the reading
        madvise(bytes.data() + (alignedBegin - begin), alignedEnd - alignedBegin, MADV_HUGEPAGE);
    return bytes;
}

/// Reads to the end, also of a file that has become shorter or longer than `expected` meanwhile. What was
/// read is hashed while the processor has it at hand.
Failure readToEnd(
    const FileCalls &calls, int file, qint64 from, qint64 expected, QByteArray &bytes, ContentHash &content)
{
    constexpr qint64 blockSize = qint64{ 1 } << 20;
    constexpr qint64 leastRoom = 65536;
    bytes = uninitialized(expected + 1);
    qint64 reached = 0;
    for (;;) {
        EndOrder::obeyIfGiven();
        if (reached == bytes.size())
            bytes.resize(reached + std::max(leastRoom, reached / 8));
        const auto size = static_cast<size_t>(std::min(blockSize, bytes.size() - reached));
        const ssize_t count =
            retried([&] { return calls.pread(file, bytes.data() + reached, size, from + reached); });
        if (count < 0)
            return ReadFailure::BrokenOff;
        if (count == 0)
            break;
        content.add(QByteArrayView(bytes).sliced(reached, count));
        reached += count;
    }
    bytes.truncate(reached);
    return {};
}

Failure readFile(const FileCalls &calls, const QByteArray &name, qint64 from, QByteArray &bytes,
    FileStamp &stamp, ContentHash &content)
{
    struct stat status = {};
    if (calls.stat(name.constData(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? ReadFailure::Missing : ReadFailure::NotOpened;
    if (const Failure failure = refusal(status))
        return failure;
    stamp = FileStamp(status);
    if (status.st_size == 0)
        return {};
    const int file = retried(
        [&] { return calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0); });
    if (file < 0)
        return ReadFailure::NotOpened;
    const auto closer = qScopeGuard([&calls, file] { calls.close(file); });
    if (calls.fstat(file, &status) != 0)
        return ReadFailure::NotOpened;
    if (const Failure failure = refusal(status)) // another file may have taken the name meanwhile
        return failure;
    stamp = FileStamp(status);
    const qint64 expected = std::max<qint64>(0, status.st_size - from);
    const Failure failure = readToEnd(calls, file, from, expected, bytes, content);
    stamp.size = from + bytes.size();
    return failure;
}

} // namespace

std::optional<ReadFailure> readWholeFile(
    const QString &fileName, QByteArray &bytes, FileVersion &version, const FileCalls &calls)
{
    QByteArray read;
    FileStamp stamp;
    ContentHash content;
    const Failure failure = readFile(calls, FileName::toBytes(fileName), 0, read, stamp, content);
    if (failure)
        return failure;
    bytes = std::move(read);
    version = FileVersion(stamp, content);
    return std::nullopt;
}

std::optional<ReadFailure> readFileFrom(
    const QString &fileName, qint64 from, QByteArray &bytes, FileStamp &stamp, const FileCalls &calls)
{
    QByteArray read;
    ContentHash content;
    const Failure failure = readFile(calls, FileName::toBytes(fileName), from, read, stamp, content);
    if (!failure)
        bytes = std::move(read);
    return failure;
}
