#include "files/copycontent.h"

#include <fcntl.h>

int openForReading(const FileCalls &calls, const QByteArray &name)
{
    return retried(
        [&] { return calls.open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0); });
}

bool writeAt(const FileCalls &calls, int fd, QByteArrayView bytes, off_t offset)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            retried([&] { return calls.pwrite(fd, bytes.data(), size_t(bytes.size()), offset); });
        if (written == 0)
            errno = ENOSPC;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
        offset += written;
    }
    return true;
}

bool readAll(const FileCalls &calls, int fd, qint64 most, QByteArray *bytes)
{
    QByteArray block(copiedBlock, Qt::Uninitialized);
    for (bytes->clear(); bytes->size() <= most;) {
        const ssize_t got =
            retried([&] { return calls.pread(fd, block.data(), size_t(block.size()), bytes->size()); });
        if (got <= 0)
            return got == 0;
        bytes->append(block.constData(), got);
    }
    return false;
}

bool copyContent(const FileCalls &calls, int from, int to, off_t *size, const CopyWatch &watch)
{
    QByteArray block(copiedBlock, Qt::Uninitialized);
    for (*size = 0;;) {
        const ssize_t got =
            retried([&] { return calls.pread(from, block.data(), size_t(block.size()), *size); });
        if (got <= 0)
            return got == 0;
        if (!writeAt(calls, to, QByteArrayView(block).first(got), *size))
            return false;
        *size += got;
        if (!watch(got))
            return false;
    }
}

bool copyAll(qint64)
{
    return true;
}
